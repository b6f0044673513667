#include "Fixture.h"
#include "TestMain.h"
#include "Unprivileged.h"

#include "deepclean/JunkLocation.h"

#include <algorithm>

namespace {

JunkLocation byId(const QList<JunkLocation> &list, const char *id)
{
    for (const JunkLocation &l : list)
        if (l.id == QLatin1String(id))
            return l;
    return {};
}

QByteArrayList sorted(QByteArrayList list)
{
    std::sort(list.begin(), list.end());
    return list;
}

} // namespace

class TestJunkLocation : public QObject
{
    Q_OBJECT

private slots:
    // Every location's folders lie in the home it was made for.
    void catalogueShapes()
    {
        for (const Platform platform : {Platform::macOS, Platform::linux}) {
            const auto list = JunkLocation::all(platform, "/homes/sample");
            QVERIFY(!list.isEmpty());
            for (const JunkLocation &location : list)
                for (const QByteArray &path : location.paths)
                    QVERIFY2(path.startsWith("/homes/sample/"), path.constData());
        }
    }

    void macCachesSkipApple()
    {
        FakeHome home;
        const QByteArray caches = home.dir("Library/Caches");
        home.file("Library/Caches/com.apple.foo", 5000);
        const QByteArray kept = home.file("Library/Caches/org.example/com.apple.x", 20000);
        const QByteArray loose = home.file("Library/Caches/.DS_Store", 100);
        const auto loc = byId(JunkLocation::all(Platform::macOS, home.path()), "caches");
        QCOMPARE(sorted(loc.targets()), sorted({caches + "/org.example", loose}));
        const DiskUsage usage = loc.measure();
        QVERIFY(usage.exists);
        QVERIFY(usage.readable);
        // The Apple cache is not counted; what would go is.
        QCOMPARE(usage.size, FakeHome::allocated(kept) + FakeHome::allocated(loose));
        QCOMPARE(usage.items, 2);
    }

    void absentAndEmptyFolders()
    {
        FakeHome home;
        const auto list = JunkLocation::all(Platform::macOS, home.path());
        const auto caches = byId(list, "caches");
        QVERIFY(caches.existingPaths().isEmpty());
        QVERIFY(caches.targets().isEmpty());
        QCOMPARE(caches.measure(), (DiskUsage{0, 0, false, true}));

        home.dir("Library/Logs");
        const auto logs = byId(list, "logs");
        QVERIFY(logs.targets().isEmpty());
        const DiskUsage empty = logs.measure();
        QVERIFY(empty.exists);
        QCOMPARE(empty.size, 0);
        QCOMPARE(empty.items, 0);

        // Only the device support folders that exist are walked; one is enough.
        home.file("Library/Developer/Xcode/tvOS DeviceSupport/17.0/symbols", 8000);
        const auto support = byId(list, "devicesupport");
        QCOMPARE(support.existingPaths().size(), 1);
        QVERIFY(support.measure().exists);
        QCOMPARE(support.measure().items, 1);
    }

    void installersMatchByExtension()
    {
        FakeHome home;
        const QByteArray dl = home.dir("Downloads");
        home.file("Downloads/Setup.PKG");
        home.file("Downloads/notes.txt");
        home.dir("Downloads/iso");
        home.file("Downloads/Disk.dmg/inside.bin");
        home.file("Downloads/sub/deeper.dmg");
        home.file("Downloads/.iso");
        const auto loc = byId(JunkLocation::all(Platform::macOS, home.path()), "installers");
        QCOMPARE(sorted(loc.targets()), sorted({dl + "/Setup.PKG", dl + "/Disk.dmg"}));
        QCOMPARE(loc.measure().items, 2);
    }

    void packageCachesGoWhole()
    {
        FakeHome home;
        home.file(".gradle/caches/a.jar", 30000);
        home.file(".cargo/registry/cache/b.crate", 10000);
        const auto loc = byId(JunkLocation::all(Platform::macOS, home.path()), "pkgcaches");
        QCOMPARE(loc.targets(), (QByteArrayList{home.at(".gradle/caches"), home.at(".cargo/registry/cache")}));
        QCOMPARE(loc.measure().items, 2);
    }

    void linuxProfile()
    {
        FakeHome home;
        const QByteArray cache = home.dir(".cache");
        home.file(".cache/thumbnails/large/a.png");
        home.file(".cache/pip/wheels/x.whl");
        home.file(".cache/mesa_shader_cache/blob");
        home.file(".cache/docs-viewer/x"); // "doc" is a skip prefix
        home.file(".cache/keepassxc/state");
        home.file(".cache/fontconfig/cache-7");
        home.file(".var/app/org.gimp.GIMP/cache/tiles");
        home.dir(".var/app/org.example.NoCache/data");
        home.file(".var/app/com.spotify.Client/cache/songs");
        home.file("Telechargements/tool.deb");
        home.file("Telechargements/movie.mkv");
        home.dir(".config");
        {
            QFile f(QFile::decodeName(home.at(".config/user-dirs.dirs")));
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write("# written by xdg-user-dirs-update\nXDG_DOWNLOAD_DIR=\"$HOME/Telechargements\"\n"
                    "XDG_MUSIC_DIR=\"$HOME/\"\n");
        }
        // A different home than the running user's: the environment is ignored.
        const auto list = JunkLocation::all(Platform::linux, home.path());
        const auto caches = byId(list, "caches");
        QCOMPARE(sorted(caches.targets()), sorted({cache + "/fontconfig", cache + "/mesa_shader_cache"}));
        const auto flatpak = byId(list, "flatpak");
        QCOMPARE(flatpak.paths, (QByteArrayList{home.at(".var/app/com.spotify.Client/cache"),
                                                home.at(".var/app/org.gimp.GIMP/cache")}));
        QCOMPARE(flatpak.targets().size(), 2);
        const auto installers = byId(list, "installers");
        QCOMPARE(installers.paths, QByteArrayList{home.at("Telechargements")});
        QCOMPARE(installers.targets(), QByteArrayList{home.at("Telechargements/tool.deb")});
        QCOMPARE(byId(list, "thumbnails").existingPaths(), QByteArrayList{cache + "/thumbnails"});
        QVERIFY(byId(list, "pkgcaches").existingPaths().contains(cache + "/pip"));
    }

    // Root reads everything, so the unreadable child is made for an
    // unprivileged child process.
    void unreadableChildStillSumsSiblings()
    {
        FakeHome home;
        const QByteArray a = home.file("Library/Caches/a/data", 40000);
        const QByteArray b = home.file("Library/Caches/b/data", 12000);
        home.file("Library/Caches/locked/secret", 9000);
        openPathForOthers(home.at("Library/Caches/a"));
        openPathForOthers(home.at("Library/Caches/b"));
        for (const char *f : {"Library/Caches/a/data", "Library/Caches/b/data"})
            ::chmod(home.at(f).constData(), 0644);
        ::chmod(home.at("Library/Caches/locked").constData(), 0700);
        if (!runningAsRoot())
            ::chmod(home.at("Library/Caches/locked").constData(), 0);
        const auto loc = byId(JunkLocation::all(Platform::macOS, home.path()), "caches");
        const ChildOutcome outcome = runUnprivileged([&] {
            const DiskUsage u = loc.measure();
            return QByteArray::number(u.size) + ' ' + QByteArray::number(u.items) + ' ' +
                   QByteArray::number(int(u.readable)) + ' ' + QByteArray::number(int(u.exists));
        });
        ::chmod(home.at("Library/Caches/locked").constData(), 0700);
        QCOMPARE(outcome.status, 0);
        const QByteArray expected = QByteArray::number(FakeHome::allocated(a) + FakeHome::allocated(b)) + " 2 0 1";
        QCOMPARE(outcome.output, expected);
    }
};

SORVEL_TEST(TestJunkLocation);
#include "tst_junklocation.moc"
