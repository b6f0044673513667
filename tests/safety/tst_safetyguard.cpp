#include "TestMain.h"

#include "safety/SafetyGuard.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

const QByteArray sampleHome("/Users/sample");

// Sentences of the guard, as the code keys them.
const QString contentsOnlyReason(
    QStringLiteral("The folder stays; everything inside it is sorvelised (except Apple's own com.apple.* items)"));
const QString homeReason(QStringLiteral("Your home folder can't be sorvelised"));
const QString keychainReason(QStringLiteral("Your saved passwords and certificates are never touched"));
const QString keysReason(QStringLiteral("Your SSH and encryption keys are never touched"));
const QString
    homeFolderReason(QStringLiteral("macOS and your apps expect this folder to exist. Open it to clean inside"));
const QString systemReason(QStringLiteral("Part of macOS, never touched"));

// "é" in its composed and decomposed forms.
const QByteArray eComposed("\xc3\xa9");
const QByteArray eDecomposed("e\xcc\x81");

void writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

} // namespace

class TestSafetyGuard : public QObject
{
    Q_OBJECT

    QTemporaryDir m_linuxHome;
    QByteArray m_home; // the Linux profile's home

    const SafetyProfile &mac() const
    {
        static const SafetyProfile profile(Platform::macOS, sampleHome);
        return profile;
    }
    const SafetyProfile &linux() const
    {
        static const SafetyProfile profile(Platform::linux, m_home);
        return profile;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_linuxHome.isValid());
        m_home = QFile::encodeName(m_linuxHome.path());
        // Localised folder names as xdg-user-dirs writes them, one switched off,
        // one absolute, one with an escaped quote, and lines that are not valid.
        writeFile(m_linuxHome.path() + QStringLiteral("/.config/user-dirs.dirs"),
                  "# written by xdg-user-dirs-update\n"
                  "XDG_DESKTOP_DIR=\"$HOME/Bureau\"\n"
                  "XDG_DOWNLOAD_DIR=\"$HOME/T" +
                      eComposed + "l" + eComposed +
                      "chargements\"\n"
                      "XDG_TEMPLATES_DIR=\"$HOME/\"\n"
                      "XDG_PUBLICSHARE_DIR=\"/srv/partage\"\n"
                      "XDG_DOCUMENTS_DIR=\"$HOME/Mes \\\"docs\\\"\"\n"
                      "XDG_MUSIC_DIR=$HOME/Unquoted\n"
                      "XDG_PICTURES_DIR=\"relative/Images\"\n"
                      "  XDG_VIDEOS_DIR = \"$HOME/Vid" +
                      eComposed + "os\"  \n");
    }

    void userDirs()
    {
        QList<QByteArray> expected = {m_home + "/Bureau", m_home + "/T" + eComposed + "l" + eComposed + "chargements",
                                      "/srv/partage", m_home + "/Mes \"docs\"", m_home + "/Vid" + eComposed + "os"};
        QCOMPARE(linux().userDirs(), expected);
        QVERIFY(mac().userDirs().isEmpty());
        // A home without the file has no user folders and still builds.
        const SafetyProfile bare(Platform::linux, m_home + "/nowhere");
        QVERIFY(bare.userDirs().isEmpty());
        QVERIFY(SafetyGuard::isProtected(m_home + "/nowhere/.config", bare));
    }

    void macProfile_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<bool>("isProtected");

        // Fixed system folders: protected as folders only.
        for (const char *path :
             {"/", "/Applications", "/Library", "/System", "/Users", "/Volumes", "/bin", "/sbin", "/usr", "/usr/local",
              "/private", "/etc", "/var", "/tmp", "/opt", "/cores", "/Library/Caches"})
            QTest::addRow("exact %s", path) << QByteArray(path) << true;
        QTest::newRow("empty is the root") << QByteArray() << true;
        QTest::newRow("/usr/local/bin/tool") << QByteArray("/usr/local/bin/tool") << false;
        QTest::newRow("/tmp/x") << QByteArray("/tmp/x") << false;
        QTest::newRow("/private/tmp/x") << QByteArray("/private/tmp/x") << false;
        QTest::newRow("/var/log/x") << QByteArray("/var/log/x") << false;
        QTest::newRow("/Library/Caches/x") << QByteArray("/Library/Caches/x") << false;
        QTest::newRow("/opt/homebrew/bin/x") << QByteArray("/opt/homebrew/bin/x") << false;

        // Literal prefixes protect what is below them, not the folder itself.
        for (const char *folder : {"/usr/bin", "/usr/lib", "/usr/libexec", "/usr/sbin", "/usr/share", "/private/etc",
                                   "/private/var/db", "/var/db", "/Library/Apple"}) {
            QTest::addRow("folder %s", folder) << QByteArray(folder) << false;
            QTest::addRow("below %s", folder) << QByteArray(folder) + "/x" << true;
        }
        QTest::newRow("/usr/bin/ls") << QByteArray("/usr/bin/ls") << true;
        QTest::newRow("/System/Library/Kernels") << QByteArray("/System/Library/Kernels") << true;
        QTest::newRow("/etc/hosts") << QByteArray("/etc/hosts") << true;
        QTest::newRow("/bin/sh") << QByteArray("/bin/sh") << true;
        QTest::newRow("sibling /Systemx") << QByteArray("/Systemx/a") << false;
        QTest::newRow("sibling /usr/binx") << QByteArray("/usr/binx/a") << false;

        // Volumes: the mount point by its shape, not what lies on it.
        QTest::newRow("/Volumes/Backup") << QByteArray("/Volumes/Backup") << true;
        QTest::newRow("/Volumes/Backup/old.zip") << QByteArray("/Volumes/Backup/old.zip") << false;
        QTest::newRow("/Volumes/Backup/Library") << QByteArray("/Volumes/Backup/Library") << false;
        QTest::newRow("/Volumes/Backup/System/x") << QByteArray("/Volumes/Backup/System/x") << false;

        // Home and the folders in it.
        QTest::newRow("home") << sampleHome << true;
        QTest::newRow("tilde") << QByteArray("~") << true;
        QTest::newRow("home with slash") << sampleHome + "/" << true;
        for (const char *suffix : {"/Library",
                                   "/Desktop",
                                   "/Documents",
                                   "/Downloads",
                                   "/Pictures",
                                   "/Movies",
                                   "/Music",
                                   "/Applications",
                                   "/Public",
                                   "/Library/Caches",
                                   "/Library/Logs",
                                   "/Library/Application Support",
                                   "/Library/Containers",
                                   "/Library/Group Containers",
                                   "/Library/Preferences",
                                   "/Library/Developer",
                                   "/Library/Mail",
                                   "/Library/Messages",
                                   "/Library/Mobile Documents",
                                   "/Library/CloudStorage",
                                   "/Library/Safari",
                                   "/Library/Accounts",
                                   "/Library/Calendars",
                                   "/Library/HomeKit",
                                   "/Library/Application Scripts",
                                   "/Library/Fonts",
                                   "/.Trash"})
            QTest::addRow("home %s", suffix) << QByteArray("~") + suffix << true;
        QTest::newRow("~/Library/Caches/com.example.app") << QByteArray("~/Library/Caches/com.example.app") << false;
        QTest::newRow("~/Documents/report.pdf") << QByteArray("~/Documents/report.pdf") << false;
        QTest::newRow("~/Library/Application Support/App") << QByteArray("~/Library/Application Support/App") << false;
        QTest::newRow("another user") << QByteArray("/Users/other") << false;
        QTest::newRow("a longer home name") << QByteArray("/Users/sample2/Documents") << false;

        // Key stores: the folder and all below it, but not a longer name.
        QTest::newRow("~/.ssh") << QByteArray("~/.ssh") << true;
        QTest::newRow("~/.ssh/id_rsa") << QByteArray("~/.ssh/id_rsa") << true;
        QTest::newRow("~/.ssh/") << QByteArray("~/.ssh/") << true;
        QTest::newRow("~/.sshfoo") << QByteArray("~/.sshfoo") << false;
        QTest::newRow("~/.gnupg/pubring.kbx") << QByteArray("~/.gnupg/pubring.kbx") << true;
        QTest::newRow("~/Library/Keychains") << QByteArray("~/Library/Keychains") << true;
        QTest::newRow("~/Library/Keychains/login.keychain-db")
            << QByteArray("~/Library/Keychains/login.keychain-db") << true;

        // Paths are normalised first.
        QTest::newRow("/usr/../usr/bin/./ls/") << QByteArray("/usr/../usr/bin/./ls/") << true;
        QTest::newRow("//usr///bin//ls") << QByteArray("//usr///bin//ls") << true;
        QTest::newRow("climbing out of home") << QByteArray("~/Documents/../../sample/Documents") << true;
        QTest::newRow("relative") << QByteArray("usr/bin/ls") << true;

        // Linux rows are not part of the macOS profile.
        for (const char *path : {"/boot", "/proc/1", "/media/u/disk", "/mnt/usb", "/home", "~/.config", "~/.cache",
                                 "~/.aws/credentials", "/run/x"})
            QTest::addRow("not on macOS: %s", path) << QByteArray(path) << false;
    }

    void macProfile()
    {
        QFETCH(QByteArray, path);
        QFETCH(bool, isProtected);
        QCOMPARE(SafetyGuard::isProtected(path, mac()), isProtected);
    }

    void linuxProfile_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<bool>("isProtected");

        for (const char *path :
             {"/boot", "/dev", "/proc", "/sys", "/run", "/lib", "/lib32", "/lib64", "/libx32", "/root", "/srv", "/snap",
              "/mnt", "/media", "/home", "/var/lib", "/var/log", "/var/cache"})
            QTest::addRow("exact %s", path) << QByteArray(path) << true;
        for (const char *path : {"/boot/vmlinuz", "/proc/1/status", "/sys/class/net", "/dev/sda", "/run/user/0/bus",
                                 "/lib/x86_64-linux-gnu/libc.so.6", "/lib32/x", "/lib64/ld-linux-x86-64.so.2",
                                 "/var/lib/dpkg/status", "/snap/core/1"})
            QTest::addRow("below %s", path) << QByteArray(path) << true;
        for (const char *path : {"/var/log/syslog", "/var/cache/apt/archives/x.deb", "/srv/www/index.html",
                                 "/home/other", "/root2", "/libx32/x", "/snapshot"})
            QTest::addRow("not %s", path) << QByteArray(path) << false;
        // The macOS lists still hold.
        QTest::newRow("/usr/bin/ls") << QByteArray("/usr/bin/ls") << true;
        QTest::newRow("/usr/bin") << QByteArray("/usr/bin") << false;
        QTest::newRow("/Volumes/X") << QByteArray("/Volumes/X") << true;

        // Mount points by shape; what lies on a volume is not protected, not even
        // below "/run/".
        QTest::newRow("/media/alice") << QByteArray("/media/alice") << true;
        QTest::newRow("/media/alice/USB") << QByteArray("/media/alice/USB") << true;
        QTest::newRow("/media/alice/USB/photo.jpg") << QByteArray("/media/alice/USB/photo.jpg") << false;
        QTest::newRow("/media/alice/USB/a/b") << QByteArray("/media/alice/USB/a/b") << false;
        QTest::newRow("/run/media") << QByteArray("/run/media") << true;
        QTest::newRow("/run/media/alice") << QByteArray("/run/media/alice") << true;
        QTest::newRow("/run/media/alice/USB") << QByteArray("/run/media/alice/USB") << true;
        QTest::newRow("/run/media/alice/USB/") << QByteArray("/run/media/alice/USB/") << true;
        QTest::newRow("/run/media/alice/USB/photo.jpg") << QByteArray("/run/media/alice/USB/photo.jpg") << false;
        QTest::newRow("/run/media/alice/USB/run/x") << QByteArray("/run/media/alice/USB/run/x") << false;
        QTest::newRow("/run/mediax/a/b/c") << QByteArray("/run/mediax/a/b/c") << true;
        QTest::newRow("/mnt/usb") << QByteArray("/mnt/usb") << true;
        QTest::newRow("/mnt/usb/file") << QByteArray("/mnt/usb/file") << false;

        // Home: XDG base folders, contents-only cache, key and credential stores.
        for (const char *suffix : {"", "/.config", "/.local", "/.local/share", "/.local/state", "/.cache",
                                   "/.local/share/Trash", "/Videos", "/Templates", "/Library/Caches", "/Documents"})
            QTest::addRow("home %s", suffix) << QByteArray("~") + suffix << true;
        for (const char *suffix : {"/.config/app/settings.ini", "/.cache/thumbnails", "/.local/share/Trash/files/x",
                                   "/.local/share/app", "/Videos/film.mkv", "/.cachex"})
            QTest::addRow("home %s", suffix) << QByteArray("~") + suffix << false;
        for (const char *suffix :
             {"/.local/share/keyrings", "/.local/share/keyrings/login.keyring", "/.pki/nssdb",
              "/.password-store/mail.gpg", "/.aws/credentials", "/.kube/config", "/.git-credentials"})
            QTest::addRow("home %s", suffix) << QByteArray("~") + suffix << true;
        QTest::newRow("~/.git-credentialsx") << QByteArray("~/.git-credentialsx") << false;
        QTest::newRow("~/.awsome") << QByteArray("~/.awsome") << false;

        // The user folders of user-dirs.dirs, under canonical equivalence.
        QTest::newRow("xdg desktop") << QByteArray("~/Bureau") << true;
        QTest::newRow("xdg desktop content") << QByteArray("~/Bureau/note.txt") << false;
        QTest::newRow("xdg download, composed")
            << QByteArray("~/T" + eComposed + "l" + eComposed + "chargements") << true;
        QTest::newRow("xdg download, decomposed")
            << QByteArray("~/T" + eDecomposed + "l" + eDecomposed + "chargements/") << true;
        QTest::newRow("xdg absolute") << QByteArray("/srv/partage") << true;
        QTest::newRow("xdg escaped quote") << QByteArray("~/Mes \"docs\"") << true;
        QTest::newRow("xdg spaces around =") << QByteArray("~/Vid" + eDecomposed + "os") << true;
        QTest::newRow("xdg unquoted ignored") << QByteArray("~/Unquoted") << false;
        QTest::newRow("xdg relative ignored") << QByteArray("/relative/Images") << false;
    }

    void linuxProfile()
    {
        QFETCH(QByteArray, path);
        QFETCH(bool, isProtected);
        const QByteArray expanded = path.startsWith('~') ? m_home + path.mid(1) : path;
        QCOMPARE(SafetyGuard::isProtected(path, linux()), isProtected);
        QCOMPARE(SafetyGuard::isProtected(expanded, linux()), isProtected);
    }

    void reason_data()
    {
        QTest::addColumn<bool>("linux");
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QString>("reason");
        QTest::newRow("~/Library/Caches") << false << QByteArray("~/Library/Caches") << contentsOnlyReason;
        QTest::newRow("~/Library/Logs/") << false << QByteArray("~/Library/Logs/") << contentsOnlyReason;
        QTest::newRow("home") << false << QByteArray("/Users/sample") << homeReason;
        QTest::newRow("keychains") << false << QByteArray("~/Library/Keychains/x.keychain-db") << keychainReason;
        QTest::newRow("ssh") << false << QByteArray("~/.ssh/id_rsa") << keysReason;
        QTest::newRow("gnupg") << false << QByteArray("~/.gnupg") << keysReason;
        QTest::newRow("~/.sshfoo, plain prefix") << false << QByteArray("~/.sshfoo") << keysReason;
        QTest::newRow("~/Documents") << false << QByteArray("~/Documents") << homeFolderReason;
        QTest::newRow("/Applications") << false << QByteArray("/Applications") << systemReason;
        QTest::newRow("/usr/bin/ls") << false << QByteArray("/usr/bin/ls") << systemReason;
        QTest::newRow("longer home name") << false << QByteArray("/Users/sample2") << systemReason;
        QTest::newRow("linux ~/.cache") << true << QByteArray("~/.cache") << contentsOnlyReason;
        QTest::newRow("linux ~/Library/Caches") << true << QByteArray("~/Library/Caches") << contentsOnlyReason;
        QTest::newRow("linux keyrings") << true << QByteArray("~/.local/share/keyrings/a") << keychainReason;
        QTest::newRow("linux aws") << true << QByteArray("~/.aws/credentials") << keychainReason;
        QTest::newRow("linux password store") << true << QByteArray("~/.password-store") << keychainReason;
        QTest::newRow("linux ssh") << true << QByteArray("~/.ssh") << keysReason;
        QTest::newRow("linux ~/.config") << true << QByteArray("~/.config") << homeFolderReason;
        QTest::newRow("linux /boot") << true << QByteArray("/boot") << systemReason;
        QTest::newRow("linux mount") << true << QByteArray("/media/alice/USB") << systemReason;
    }

    void reason()
    {
        QFETCH(bool, linux);
        QFETCH(QByteArray, path);
        QFETCH(QString, reason);
        QCOMPARE(SafetyGuard::reason(path, linux ? this->linux() : mac()), reason);
    }

    // A home whose name is not ASCII matches in either Unicode form.
    void canonicalEquivalence()
    {
        const SafetyProfile profile(Platform::macOS, "/Users/Zo" + eComposed);
        const QByteArray decomposedHome = "/Users/Zo" + eDecomposed;
        QVERIFY(SafetyGuard::isProtected(decomposedHome, profile));
        QVERIFY(SafetyGuard::isProtected(decomposedHome + "/Documents", profile));
        QVERIFY(SafetyGuard::isProtected(decomposedHome + "/.ssh/id_rsa", profile));
        QVERIFY(!SafetyGuard::isProtected(decomposedHome + "/Documents/a", profile));
        QVERIFY(SafetyGuard::isContentsOnly(decomposedHome + "/Library/Caches/", profile));
        QCOMPARE(SafetyGuard::reason(decomposedHome, profile), homeReason);
        QCOMPARE(SafetyGuard::reason(decomposedHome + "/Music", profile), homeFolderReason);
        // Bytes that are not UTF-8 compare as they are.
        QVERIFY(!SafetyGuard::isProtected("/Users/Zo\xe9", profile));
    }

    void contentsOnly()
    {
        QCOMPARE(SafetyGuard::contentsOnly(mac()),
                 QSet<QByteArray>({sampleHome + "/Library/Caches", sampleHome + "/Library/Logs"}));
        QVERIFY(SafetyGuard::contentsOnly(linux()).contains(m_home + "/.cache"));
        QVERIFY(SafetyGuard::isContentsOnly("~/.cache/", linux()));
        QVERIFY(!SafetyGuard::isContentsOnly("~/.cache/x", linux()));
        QVERIFY(!SafetyGuard::isContentsOnly("~/.cache", mac()));
    }

    // The running system's profile: the temporary home of this run, read once.
    void standardProfile()
    {
        const SafetyProfile &profile = SafetyProfile::standard();
        QCOMPARE(profile.home(), TestMain::home());
        QCOMPARE(profile.platform(), Platform::current());
        QVERIFY(SafetyGuard::isProtected("~"));
        QVERIFY(SafetyGuard::isProtected(TestMain::home() + "/.ssh/config"));
        QVERIFY(!SafetyGuard::isProtected(TestMain::home() + "/Documents/a.txt"));
        QCOMPARE(&SafetyProfile::standard(), &profile);
    }
};

SORVEL_TEST(TestSafetyGuard);
#include "tst_safetyguard.moc"
