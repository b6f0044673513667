#include "TestMain.h"

#include "safety/RiskCatalog.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <atomic>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

Q_DECLARE_METATYPE(Risk::Level)

namespace {

const QByteArray sampleHome("/Users/sample");
constexpr qint64 noSize = -1;

std::optional<qint64> optionalSize(qint64 size) { return size < 0 ? std::nullopt : std::optional<qint64>(size); }

// A file of exactly `size` bytes (sparse; only its length matters here).
bool makeFile(const QByteArray &path, qint64 size)
{
    const int fd = ::open(path.constData(), O_CREAT | O_WRONLY | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0)
        return false;
    const bool ok = ::ftruncate(fd, size) == 0;
    ::close(fd);
    return ok;
}

bool makeDir(const QByteArray &path) { return QDir().mkpath(QFile::decodeName(path)); }

} // namespace

class TestRiskCatalog : public QObject
{
    Q_OBJECT

    QTemporaryDir m_linuxHome;
    QByteArray m_home;

    static const SafetyProfile &mac()
    {
        static const SafetyProfile profile(Platform::macOS, sampleHome);
        return profile;
    }
    const SafetyProfile &linux() const
    {
        static const SafetyProfile profile(Platform::linux, m_home);
        return profile;
    }

    void addColumns()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<bool>("isDirectory");
        QTest::addColumn<bool>("isBuildOutput");
        QTest::addColumn<qint64>("size");
        QTest::addColumn<Risk::Level>("level");
        QTest::addColumn<QString>("title");
    }

    static void row(const char *name, const QByteArray &path, Risk::Level level, const char *title,
                    bool isDirectory = false, bool isBuildOutput = false, qint64 size = noSize)
    {
        QTest::newRow(name) << path << isDirectory << isBuildOutput << size << level << QString::fromUtf8(title);
    }

    void check(const SafetyProfile &profile)
    {
        QFETCH(QByteArray, path);
        QFETCH(bool, isDirectory);
        QFETCH(bool, isBuildOutput);
        QFETCH(qint64, size);
        QFETCH(Risk::Level, level);
        QFETCH(QString, title);
        const Risk risk = RiskCatalog::assess(path, isDirectory, isBuildOutput, optionalSize(size), profile);
        QCOMPARE(risk.title, title);
        QCOMPARE(risk.level.name(), level.name());
        QCOMPARE(risk.title.isEmpty(), risk.why.isEmpty());
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_linuxHome.isValid());
        m_home = QFile::encodeName(m_linuxHome.path());
        QVERIFY(makeDir(m_home + "/.config"));
        QFile dirs(m_linuxHome.path() + QStringLiteral("/.config/user-dirs.dirs"));
        QVERIFY(dirs.open(QIODevice::WriteOnly));
        dirs.write("XDG_DOWNLOAD_DIR=\"$HOME/Telechargements\"\nXDG_DESKTOP_DIR=\"$HOME/Bureau\"\n");
    }

    void macProfile_data()
    {
        addColumns();
        using L = Risk::Level;
        // 1-2: the folders whose contents may go (what the guard keeps is
        // checked over generated paths in TestSafetyProperties).
        row("~/Library/Caches", "~/Library/Caches", L::safe, "Cache", true);
        row("/usr/bin is no item of the guard", "/usr/bin", L::normal, "", true);
        // 3: build output beats the secret tests, not the guard.
        row(".env marked build output", "~/project/.env", L::safe, "Build output", false, true);
        row("build output in a protected folder", "~/Documents", L::locked, "Kept", true, true);
        // 4: keys and passwords.
        row("~/project/.ENV", "~/project/.ENV", L::danger, "Keys & passwords");
        row(".pem in Caches", "~/Library/Caches/com.example/cert.pem", L::danger, "Keys & passwords");
        row("Keynote folder", "~/Deck.key", L::normal, "", true);
        row("key of 512,000 bytes", "~/Deck.key", L::danger, "Keys & passwords", false, false, 512000);
        row("key of 512,001 bytes", "~/Deck.key", L::normal, "", false, false, 512001);
        row("credentials whatever its size", "~/x/credentials", L::danger, "Keys & passwords", false, false, 9000000);
        // 5-6: libraries and virtual machines, also inside ~/Library.
        row("vmdk in Containers", "~/Library/Containers/com.vm/Data/disk.vmdk", L::danger, "Virtual machine");
        // 7: the Library table.
        row("Apple cache", "~/Library/Caches/com.apple.Safari/x", L::caution, "Apple cache");
        row("com.applex is no Apple cache", "~/Library/Caches/com.applex", L::safe, "Cache");
        row("backup folder itself", "~/Library/Application Support/MobileSync/Backup", L::danger, "Device backup");
        row("cache in a container", "~/Library/Containers/com.x/Data/Library/Caches/y", L::safe, "Cache");
        row("docker raw with cache", "~/Library/Containers/com.docker.docker/Data/Library/Caches/Docker.raw", L::safe,
            "Cache");
        row("docker raw", "~/Library/Containers/com.docker.docker/Data/vms/0/data/Docker.raw", L::danger,
            "Docker data");
        row("application support", "~/Library/Application Support/App", L::danger, "App data", true);
        row("docker.raw never reaches step 9 in Library", "~/Library/Stuff/Docker.raw", L::caution, "System library");
        // 8-9: containers outside Library.
        row("~/.docker/x", "~/.docker/x", L::danger, "Container data");
        row("~/.docker itself goes on", "~/.docker", L::normal, "", true);
        row("Docker.raw", "/Volumes/Data/Docker.raw", L::danger, "Docker disk");
        row("docker.qcow2", "~/vm/Docker.qcow2", L::danger, "Virtual machine");
        // 11: installers in Downloads.
        row("~/Downloads/Sub/App.DMG", "~/Downloads/Sub/App.DMG", L::caution, "Installer");
        row("~/Desktop/App.dmg", "~/Desktop/App.dmg", L::normal, "");
        row("~/Downloads/app.deb on macOS", "~/Downloads/app.deb", L::normal, "");
        // 12: nothing known.
        row("another user's Library", "/Users/other/Library/Caches/x", L::normal, "");
    }

    void macProfile() { check(mac()); }

    void linuxProfile_data()
    {
        addColumns();
        using L = Risk::Level;
        row("~/.cache", "~/.cache", L::safe, "Cache", true);
        row("secret in .cache", "~/.cache/app/token.pem", L::danger, "Keys & passwords");
        row("trash contents", "~/.local/share/Trash/files/old.txt", L::caution, "Trash");
        row("app data", "~/.local/share/gnome-shell/extensions", L::danger, "App data", true);
        row("flatpak cache", "~/.var/app/org.gimp.GIMP/cache/gegl", L::safe, "Cache", true);
        row("flatpak data", "~/.var/app/org.gimp.GIMP/data", L::danger, "App data", true);
        row("settings", "~/.config/app/settings.ini", L::danger, "Settings");
        row("xdg downloads deb", "~/Telechargements/app.deb", L::caution, "Installer");
        row("downloads iso", "~/Downloads/x.iso", L::caution, "Installer");
        row("desktop iso", "~/Bureau/x.iso", L::normal, "");
        row("mount point", "/media/alice/USB", L::locked, "Kept", true);
        row("on a volume", "/media/alice/USB/photo.jpg", L::normal, "");
        row("vm on a volume", "/run/media/alice/USB/vm.qcow2", L::danger, "Virtual machine");
        row("~/.cachefoo", "~/.cachefoo/x", L::normal, "");
        row("library rows still apply", "~/Library/Caches/x", L::safe, "Cache");
    }

    void linuxProfile() { check(linux()); }

    // ".key" with no size given: the catalogue reads the size of the item itself.
    void keynoteRuleReadsTheDisk()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QByteArray base = QFile::encodeName(dir.path());
        QVERIFY(makeFile(base + "/small.key", 512000));
        QVERIFY(makeFile(base + "/big.key", 512001));
        QVERIFY(makeFile(base + "/empty.key", 0));
        QVERIFY(::symlink("big.key", (base + "/link.key").constData()) == 0);
        auto level = [&](const char *name) {
            return RiskCatalog::assess(base + name, false, false, std::nullopt, mac()).level;
        };
        QCOMPARE(level("/small.key"), Risk::Level::danger);
        QCOMPARE(level("/big.key"), Risk::Level::normal);
        QCOMPARE(level("/empty.key"), Risk::Level::danger);
        QCOMPARE(level("/missing.key"), Risk::Level::danger);
        QCOMPARE(level("/link.key"), Risk::Level::danger); // the link's own size
        // A given size wins over the disk.
        QCOMPARE(RiskCatalog::assess(base + "/big.key", false, false, 10, mac()).level, Risk::Level::danger);
    }

    void gitRepositories()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QByteArray base = QFile::encodeName(dir.path());
        QVERIFY(makeDir(base + "/repo"));
        QCOMPARE(QProcess::execute(QStringLiteral("git"),
                                   {QStringLiteral("init"), QStringLiteral("-q"), QFile::decodeName(base + "/repo")}),
                 0);
        QVERIFY(makeDir(base + "/worktree"));
        QVERIFY(makeFile(base + "/worktree/.git", 20)); // a linked work tree has a ".git" file
        QVERIFY(makeDir(base + "/plain/sub"));

        auto title = [&](const QByteArray &path, bool isDirectory) {
            return RiskCatalog::assess(path, isDirectory, false, std::nullopt, mac()).title;
        };
        QCOMPARE(title(base + "/repo", true), QStringLiteral("Git repository"));
        QCOMPARE(title(base + "/repo/", true), QStringLiteral("Git repository"));
        QCOMPARE(title(base + "/worktree", true), QStringLiteral("Git repository"));
        QCOMPARE(title(base + "/plain", true), QString());
        QCOMPARE(title(base + "/plain/sub/..", true), QString());
        QCOMPARE(title(base + "/repo", false), QString()); // files are never asked
        // The history itself, and anything in it, is the repository's.
        QCOMPARE(title(base + "/repo/.git", true), QStringLiteral("Git repository"));
        QCOMPARE(title(base + "/repo/.git/objects/pack/p.pack", false), QStringLiteral("Git repository"));
        QCOMPARE(title(base + "/worktree/.git", false), QStringLiteral("Git repository"));
        QCOMPARE(title(base + "/plain/.github/ci.yml", false), QString());
        QCOMPARE(title(base + "/missing", true), QString());
        QCOMPARE(RiskCatalog::assess(base + "/repo", true, true, std::nullopt, mac()).title,
                 QStringLiteral("Build output"));

        // An answer is kept for the life of the process.
        QVERIFY(makeDir(base + "/plain/.git"));
        QCOMPARE(title(base + "/plain", true), QString());
        QVERIFY(!RiskCatalog::isGitRepository(base + "/plain"));
        QVERIFY(RiskCatalog::isGitRepository(base + "/plain/")); // another text is another key

        // A repository inside ~/Library takes a Library verdict.
        const SafetyProfile profile(Platform::macOS, base);
        QVERIFY(makeDir(base + "/Library/Stuff/repo/.git"));
        QVERIFY(makeDir(base + "/Library/Application Support/repo/.git"));
        QCOMPARE(RiskCatalog::assess(base + "/Library/Stuff/repo", true, false, std::nullopt, profile).title,
                 QStringLiteral("System library"));
        QCOMPARE(RiskCatalog::assess("~/Library/Application Support/repo", true, false, std::nullopt, profile).title,
                 QStringLiteral("App data"));
    }

    // Many threads ask about the same folders at once, repositories and not; the
    // cache must give every one of them the right answer.
    void gitCacheFromManyThreads()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QByteArray base = QFile::encodeName(dir.path());
        QList<QByteArray> folders;
        QList<bool> isRepo;
        for (int i = 0; i < 64; ++i) {
            const QByteArray folder = base + "/f" + QByteArray::number(i);
            QVERIFY(makeDir(folder));
            const bool repo = i % 3 == 0;
            if (repo)
                QVERIFY(i % 2 ? makeDir(folder + "/.git") : makeFile(folder + "/.git", 1));
            folders.append(folder);
            isRepo.append(repo);
        }

        std::atomic<int> wrong{0};
        std::atomic<int> asked{0};
        std::atomic<bool> go{false};
        std::vector<std::thread> threads;
        for (int t = 0; t < 8; ++t) {
            threads.emplace_back([&, t] {
                while (!go.load())
                    std::this_thread::yield();
                for (int round = 0; round < 50; ++round) {
                    for (int k = 0; k < folders.size(); ++k) {
                        const int i = (k * 7 + t * 13 + round) % folders.size();
                        const bool viaAssess = (k + t) % 2 == 0;
                        const bool answer =
                            viaAssess ? RiskCatalog::assess(folders[i], true, false, std::nullopt, mac()).title ==
                                            QLatin1String("Git repository")
                                      : RiskCatalog::isGitRepository(folders[i]);
                        if (answer != isRepo[i])
                            ++wrong;
                        ++asked;
                    }
                }
            });
        }
        go = true;
        for (std::thread &thread : threads)
            thread.join();
        QCOMPARE(wrong.load(), 0);
        QCOMPARE(asked.load(), 8 * 50 * 64);
    }

    // Four rows, safe to locked, each worded for its platform.
    void summary()
    {
        for (const SafetyProfile *profile : {&mac(), &linux()}) {
            const QList<RiskCatalog::SummaryRow> rows = RiskCatalog::summary(*profile);
            QCOMPARE(rows.size(), 4);
            QCOMPARE(rows.first().level, Risk::Level::safe);
            QCOMPARE(rows.last().level, Risk::Level::locked);
            QString all;
            for (const RiskCatalog::SummaryRow &row : rows)
                all += row.heading + row.lines.join(u'\n');
            QCOMPARE(all.contains(QLatin1String("Flatpak")), profile == &linux());
        }
    }
};

SORVEL_TEST(TestRiskCatalog);
#include "tst_riskcatalog.moc"
