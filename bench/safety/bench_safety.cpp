// Calls per second of the safety guard and the risk catalogue over a mix of
// realistic paths, beside the cost of the pieces they are made of and of one
// lstat, the disk call they avoid. Run through bench/safety.

#include "core/Paths.h"
#include "safety/RiskCatalog.h"
#include "safety/SafetyGuard.h"

#include <QSet>
#include <QTest>

#include <sys/stat.h>

namespace {

// Shaped like what the explorer and the shelves draw: caches, projects, media,
// system files, key stores, volumes; a few with odd slashes.
QList<QByteArray> mix(const QByteArray &home)
{
    const QList<QByteArray> tails = {
        "/Library/Caches/com.apple.Safari/WebKitCache/Version 16/Blobs/1",
        "/Library/Caches/com.spotify.client/Data/a1/b2",
        "/Library/Application Support/Code/User/workspaceStorage/abc",
        "/Library/Containers/com.docker.docker/Data/vms/0/data/Docker.raw",
        "/Library/Developer/Xcode/DerivedData/App-abc/Build/Products",
        "/Documents/Reports/2024/Q3 report.pdf",
        "/Documents/Projects/app/node_modules/react/index.js",
        "/Documents/Projects/app/src/main.cpp",
        "/Documents/Projects/app/.env",
        "/Downloads/ubuntu-24.04-desktop-amd64.iso",
        "/Downloads/Setup.dmg",
        "/Pictures/Photos Library.photoslibrary",
        "/Pictures/2023/IMG_0001.HEIC",
        "/Movies/Holiday/clip.mov",
        "/Music/Song.band",
        "/.ssh/id_ed25519",
        "/.cache/thumbnails/large/0a1b2c.png",
        "/.cache/pip/http/a/b/c",
        "/.local/share/Trash/files/old.txt",
        "/.config/Code/User/settings.json",
        "/.var/app/org.gimp.GIMP/cache/gegl-0.4/swap",
        "/.docker/buildx/instances",
        "/VirtualBox VMs/Win/Win.vdi",
        "/src/linux/drivers/gpu/drm/amd/display/dc/core/dc.c",
        "//Documents///Projects/app/./build/../dist/bundle.js/",
    };
    const QList<QByteArray> system = {
        "/usr/bin/ls",
        "/usr/lib/x86_64-linux-gnu/libQt6Core.so.6",
        "/usr/share/icons/hicolor/index.theme",
        "/usr/local/bin/tool",
        "/var/log/journal/abc/system.journal",
        "/var/lib/dpkg/status",
        "/opt/google/chrome/chrome",
        "/System/Library/Kernels/kernel",
        "/Applications/Xcode.app",
        "/Volumes/Backup",
        "/Volumes/Backup/Archive/2019.zip",
        "/media/alice/USB/DCIM/100/IMG_1.JPG",
        "/run/media/alice/Disk/films/a.mkv",
        "/srv/ci/build-1234/out.o",
        "/private/var/db/x",
    };
    QList<QByteArray> paths;
    for (const QByteArray &tail : tails)
        paths.append(home + tail);
    paths.append(system);
    paths.append("~/Library/Caches/com.example.app/x");
    paths.append("~/Documents");
    return paths;
}

} // namespace

class BenchSafety : public QObject
{
    Q_OBJECT

    SafetyProfile m_linux{Platform::linux, "/home/sample"};
    SafetyProfile m_mac{Platform::macOS, "/Users/sample"};

    void addProfiles()
    {
        QTest::addColumn<bool>("linux");
        QTest::newRow("linux") << true;
        QTest::newRow("macOS") << false;
    }
    const SafetyProfile &profile(bool linux) const { return linux ? m_linux : m_mac; }

private slots:
    void initTestCase()
    {
        // Each run of a benchmark covers the whole mix; report calls per second
        // as mix size / time per iteration.
        qInfo("paths per iteration: %lld", qlonglong(mix("/home/sample").size()));
    }

    void isProtected_data() { addProfiles(); }
    void isProtected()
    {
        QFETCH(bool, linux);
        const QList<QByteArray> paths = mix(profile(linux).home());
        int hits = 0;
        QBENCHMARK
        {
            for (const QByteArray &path : paths)
                hits += SafetyGuard::isProtected(path, profile(linux));
        }
        QVERIFY(hits > 0);
    }

    void assessFiles_data() { addProfiles(); }
    void assessFiles()
    {
        QFETCH(bool, linux);
        const QList<QByteArray> paths = mix(profile(linux).home());
        int badges = 0;
        QBENCHMARK
        {
            for (const QByteArray &path : paths)
                badges += RiskCatalog::assess(path, false, false, 4096, profile(linux)).hasBadge();
        }
        QVERIFY(badges > 0);
    }

    // Folders ask the git cache: one access() per folder for the life of the
    // process, a locked lookup afterwards.
    void assessFolders_data() { addProfiles(); }
    void assessFolders()
    {
        QFETCH(bool, linux);
        const QList<QByteArray> paths = mix(profile(linux).home());
        int badges = 0;
        QBENCHMARK
        {
            for (const QByteArray &path : paths)
                badges += RiskCatalog::assess(path, true, false, std::nullopt, profile(linux)).hasBadge();
        }
        QVERIFY(badges > 0);
    }

    // The pieces, for scale.
    void baselineNormalize()
    {
        const QList<QByteArray> paths = mix("/home/sample");
        qsizetype total = 0;
        QBENCHMARK
        {
            for (const QByteArray &path : paths)
                total += Paths::normalize(path).size();
        }
        QVERIFY(total > 0);
    }

    void baselineSetLookup()
    {
        const QList<QByteArray> paths = mix("/home/sample");
        const QSet<QByteArray> &exact = m_linux.exact();
        int hits = 0;
        QBENCHMARK
        {
            for (const QByteArray &path : paths)
                hits += exact.contains(path);
        }
        QVERIFY(hits >= 0);
    }

    // What a single disk call per path would cost (paths mostly missing, so
    // this is the cheap failing lstat).
    void baselineLstat()
    {
        const QList<QByteArray> paths = mix("/home/sample");
        int found = 0;
        QBENCHMARK
        {
            for (const QByteArray &path : paths) {
                struct stat st {};
                found += ::lstat(path.constData(), &st) == 0;
            }
        }
        QVERIFY(found >= 0);
    }
};

QTEST_GUILESS_MAIN(BenchSafety)
#include "bench_safety.moc"
