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

    static void protectedRows(bool isProtected, std::initializer_list<const char *> paths)
    {
        for (const char *path : paths)
            QTest::addRow("%s %s", isProtected ? "protected" : "free", path) << QByteArray(path) << isProtected;
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
        // System folders protect themselves only; literal prefixes what is
        // below them, not the folder itself nor a longer sibling name.
        protectedRows(true, {"", "/", "/Applications", "/usr", "/usr/local", "/private", "/tmp", "/Library/Caches",
                             "/usr/bin/ls", "/System/Library/Kernels", "/etc/hosts", "/private/var/db/x",
                             "/Library/Apple/x"});
        protectedRows(false, {"/usr/local/bin/tool", "/Library/Caches/x", "/usr/bin", "/private/var/db", "/Systemx/a",
                              "/usr/binx/a"});
        // Volumes: the mount point by its shape, not what lies on it.
        protectedRows(true, {"/Volumes/Backup"});
        protectedRows(false, {"/Volumes/Backup/old.zip", "/Volumes/Backup/Library", "/Volumes/Backup/System/x"});
        // Home and the folders in it; key stores and all below them.
        protectedRows(true,
                      {"/Users/sample", "~", "/Users/sample/", "~/Library", "~/Documents", "~/Public",
                       "~/Library/Caches", "~/Library/Application Support", "~/Library/Fonts", "~/.Trash", "~/.ssh",
                       "~/.ssh/", "~/.ssh/id_rsa", "~/.gnupg/pubring.kbx", "~/Library/Keychains/login.keychain-db"});
        protectedRows(false, {"~/Library/Caches/com.example.app", "~/Documents/report.pdf", "/Users/other",
                              "/Users/sample2/Documents", "~/.sshfoo"});
        // (That paths are normalised first is checked over generated paths in
        // TestSafetyProperties.)
        // Linux rows are not part of the macOS profile.
        protectedRows(false, {"/boot", "/media/u/disk", "/home", "~/.config", "~/.aws/credentials"});
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
        protectedRows(true, {"/boot", "/proc", "/lib64", "/var/log", "/home", "/boot/vmlinuz", "/run/user/0/bus",
                             "/lib/x86_64-linux-gnu/libc.so.6", "/var/lib/dpkg/status", "/snap/core/1"});
        protectedRows(false, {"/var/log/syslog", "/var/cache/apt/archives/x.deb", "/root2", "/libx32/x", "/snapshot",
                              "/homework/x", "/usr/local/bin/tool"});
        // System folders are refused whole, not only what lies below them.
        protectedRows(true, {"/usr/bin/ls", "/Volumes/X", "/usr/bin", "/usr/lib", "/usr/sbin", "/usr/share", "/etc",
                             "/var", "/usr/libexec", "/usr/include", "/usr/src", "/usr/lib64/x", "/sbin/x", "/run"});
        // Another user's home, and everything in it.
        protectedRows(true, {"/home/guest7", "/home/guest7/", "/home/guest7/.ssh/id_rsa", "/home/guest7/notes.txt"});
        // Mount points by shape; what lies on a volume is not protected, not even
        // below "/run/".
        protectedRows(true, {"/media/alice", "/media/alice/USB", "/run/media", "/run/media/alice",
                             "/run/media/alice/USB/", "/run/mediax/a/b/c", "/mnt/usb"});
        protectedRows(false, {"/media/alice/USB/photo.jpg", "/run/media/alice/USB/run/x", "/mnt/usb/file"});

        // Home: XDG base folders, contents-only cache, key and credential stores.
        protectedRows(true, {"~", "~/.config", "~/.local/share", "~/.local/state", "~/.cache", "~/.local/share/Trash",
                             "~/Library/Caches", "~/Documents", "~/.local/share/keyrings/login.keyring", "~/.pki/nssdb",
                             "~/.password-store/mail.gpg", "~/.aws/credentials", "~/.git-credentials"});
        protectedRows(false, {"~/.config/app/settings.ini", "~/.cache/thumbnails", "~/.local/share/Trash/files/x",
                              "~/.local/share/app", "~/.cachex", "~/.git-credentialsx", "~/.awsome"});

        // The user folders of user-dirs.dirs (parsed as userDirs() shows), under
        // canonical equivalence.
        QTest::newRow("xdg desktop") << QByteArray("~/Bureau") << true;
        QTest::newRow("xdg desktop content") << QByteArray("~/Bureau/note.txt") << false;
        QTest::newRow("xdg download, composed")
            << QByteArray("~/T" + eComposed + "l" + eComposed + "chargements") << true;
        QTest::newRow("xdg download, decomposed")
            << QByteArray("~/T" + eDecomposed + "l" + eDecomposed + "chargements/") << true;
        QTest::newRow("xdg spaces around =") << QByteArray("~/Vid" + eDecomposed + "os") << true;
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
        QTest::newRow("keychains") << false << QByteArray("~/Library/Keychains/x.keychain-db") << keychainReason;
        QTest::newRow("ssh") << false << QByteArray("~/.ssh/id_rsa") << keysReason;
        QTest::newRow("~/.sshfoo, plain prefix") << false << QByteArray("~/.sshfoo") << keysReason;
        QTest::newRow("~/Documents") << false << QByteArray("~/Documents") << homeFolderReason;
        QTest::newRow("/Applications") << false << QByteArray("/Applications") << systemReason;
        QTest::newRow("longer home name") << false << QByteArray("/Users/sample2") << systemReason;
        QTest::newRow("linux ~/.cache") << true << QByteArray("~/.cache") << contentsOnlyReason;
        QTest::newRow("linux aws") << true << QByteArray("~/.aws/credentials") << keychainReason;
        QTest::newRow("linux ~/.config") << true << QByteArray("~/.config") << homeFolderReason;
        QTest::newRow("linux other home") << true << QByteArray("/home/guest7/.ssh/id_rsa")
                                          << QStringLiteral("Another user's home folder, never touched");
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
