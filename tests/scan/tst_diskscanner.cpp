#include "ScanFixtures.h"
#include "TestMain.h"

#include "scan/DiskScanner.h"

#include <QTemporaryDir>

#include <thread>

#include <unistd.h>

using Fixtures::file;
using Fixtures::folder;

namespace {

ScanOptions options(qint64 minSize = 1, bool packages = true, bool skipHidden = false, QByteArrayList excluded = {})
{
    ScanOptions o;
    o.minTrackedSize = minSize;
    o.treatPackagesAsFiles = packages;
    o.skipHiddenFiles = skipHidden;
    o.excludedPaths = std::move(excluded);
    return o;
}

struct Run {
    ScanResultPtr result;
    QList<ScanProgress> published;
};

Run scanTree(const QByteArray &root, const ScanOptions &o = options(), qint64 firstID = 0,
             const CancelTokenPtr &token = makeCancelToken())
{
    Run run;
    run.result = DiskScanner::scan(root, o, firstID, token, [&run](const ScanProgress &p) { run.published.append(p); });
    return run;
}

const FileItem *findFile(const ScanResult &r, QByteArrayView path)
{
    for (const FileItem &f : r.files)
        if (f.path == path)
            return &f;
    return nullptr;
}

bool hasDiscovered(const QList<ScanProgress> &published, QByteArrayView path)
{
    for (const ScanProgress &p : published)
        for (const DiscoveredEntry &e : p.discovered)
            if (e.path == path)
                return true;
    return false;
}

QByteArray tempRoot(const QTemporaryDir &tmp) { return QFile::encodeName(tmp.path()); }

} // namespace

// Scans and checks the invariants of every node before the test looks further.
#define SCAN(run, ...)                                                                                                 \
    const Run run = scanTree(__VA_ARGS__);                                                                             \
    QVERIFY(run.result);                                                                                               \
    QCOMPARE(Fixtures::invariantFault(*run.result, run.result->lastID - qint64(run.result->files.size())), QString())

class TestDiskScanner : public QObject
{
    Q_OBJECT

private slots:
    // Sizes are allocated bytes, hard links count once, and the root's total is
    // what an independent walk finds.
    void totalsMatchAnIndependentCount()
    {
        QTemporaryDir tmp;
        const QByteArray root = tempRoot(tmp);
        file(root + "/a/one.txt", 10);
        file(root + "/a/b/two.mov", 5000);
        file(root + "/a/b/c/three.bin", 70000);
        file(root + "/empty", 0);
        file(root + "/d/linked", 9000);
        Fixtures::hardLink(root + "/d/linked", root + "/e/alias");
        folder(root + "/f/g/h");
        QVERIFY(::symlink("/usr", (root + "/a/link-to-usr").constData()) == 0);
        QVERIFY(::symlink("one.txt", (root + "/a/link-to-file").constData()) == 0);

        SCAN(run, root);
        const ScanResult &r = *run.result;
        QCOMPARE(r.root->size, Fixtures::allocatedBelow(root));
        QCOMPARE(r.root->name, root);
        QCOMPARE(r.totalFiles, 5); // two links of one file count once; links to elsewhere count nothing
        QCOMPARE(r.totalDirs, 9);  // root a b c d e f g h
        QCOMPARE(r.unreadableCount, 0);
        QVERIFY(!r.node(root + "/a/link-to-usr"));
        QVERIFY(r.date > 0);
        QVERIFY(r.duration >= 0);
    }

    void threeLinksCountOnceAtTheFirstPathMet()
    {
        QTemporaryDir tmp;
        const QByteArray root = tempRoot(tmp);
        file(root + "/x/original", 20000);
        Fixtures::hardLink(root + "/x/original", root + "/y/second");
        Fixtures::hardLink(root + "/x/original", root + "/z/deeper/third");
        file(root + "/y/single", 3000);

        const QByteArrayList order = Fixtures::filesInWalkOrder(root);
        QByteArray first;
        for (const QByteArray &path : order)
            if (path.endsWith("original") || path.endsWith("second") || path.endsWith("third")) {
                first = path;
                break;
            }

        SCAN(run, root);
        const ScanResult &r = *run.result;
        QCOMPARE(r.totalFiles, 2);
        QCOMPARE(r.root->size, Fixtures::allocatedBelow(root));
        QVERIFY(findFile(r, first));
        int listed = 0;
        for (const QByteArray &path : {root + "/x/original", root + "/y/second", root + "/z/deeper/third"})
            listed += findFile(r, path) ? 1 : 0;
        QCOMPARE(listed, 1);
        // The folders of the other paths hold none of it.
        const qint64 linkedSize = findFile(r, first)->size;
        for (const char *dir : {"/x", "/y", "/z/deeper"}) {
            const DirNodePtr node = r.node(root + dir);
            QVERIFY(node);
            const bool holder = first.startsWith(root + dir + '/');
            QCOMPARE(node->size >= linkedSize, holder);
        }
    }

    void linkInsideAndOutsideAPackage()
    {
        QTemporaryDir tmp;
        const QByteArray root = tempRoot(tmp);
        file(root + "/Tool.app/Contents/MacOS/tool", 40000);
        file(root + "/Tool.app/Contents/Info.plist", 500);
        Fixtures::hardLink(root + "/Tool.app/Contents/MacOS/tool", root + "/bin/tool");

        const QByteArrayList order = Fixtures::filesInWalkOrder(root);
        const bool packageFirst =
            order.indexOf(root + "/Tool.app/Contents/MacOS/tool") < order.indexOf(root + "/bin/tool");

        SCAN(run, root);
        const ScanResult &r = *run.result;
        QCOMPARE(r.root->size, Fixtures::allocatedBelow(root));
        QCOMPARE(r.totalFiles, 2);
        const FileItem *package = findFile(r, root + "/Tool.app");
        QVERIFY(package);
        QVERIFY(package->isPackage);
        const FileItem *outside = findFile(r, root + "/bin/tool");
        QCOMPARE(outside == nullptr, packageFirst);
        QCOMPARE(package->size > 40000, packageFirst);
        QCOMPARE(r.node(root + "/bin")->fileCount, packageFirst ? 0 : 1);
    }

    void packageDirectlyUnderTheRoot()
    {
        QTemporaryDir tmp;
        const QByteArray root = tempRoot(tmp);
        file(root + "/Big.app/Contents/MacOS/big", 300000);
        file(root + "/Big.app/Contents/Resources/a.png", 5000);
        file(root + "/Big.app/Contents/.hidden", 100); // counts inside a package even with hidden files skipped
        file(root + "/Small.bundle/x", 10);
        file(root + "/dir/y.txt", 10);
        for (int i = 0; i < 3000; ++i) // enough entries for progress while the package is measured
            file(root + "/Big.app/Contents/Resources/r" + QByteArray::number(i), 1);

        SCAN(run, root, options(100000, true, true));
        const ScanResult &r = *run.result;
        QCOMPARE(r.totalDirs, 4); // root, Big.app, Small.bundle, dir
        QVERIFY(!r.node(root + "/Big.app"));
        QVERIFY(!r.node(root + "/Big.app/Contents"));
        QCOMPARE(r.root->children.size(), size_t(1));

        const FileItem *big = findFile(r, root + "/Big.app");
        QVERIFY(big);
        QVERIFY(big->isPackage);
        QCOMPARE(big->category, FileCategory::application);
        QCOMPARE(big->size, Fixtures::allocatedBelow(root + "/Big.app"));
        QCOMPARE(big->name, QByteArray("Big.app"));
        QVERIFY(big->logicalSize >= 305100);
        QCOMPARE(r.totalFiles, 3003 + 1 + 1);

        // Below the threshold: no record, but its size is in the sums.
        QVERIFY(!findFile(r, root + "/Small.bundle"));
        const qint64 small = Fixtures::allocatedBelow(root + "/Small.bundle");
        QCOMPARE(r.root->smallFilesSize, small);
        QCOMPARE(r.total(FileCategory::developer), (CategoryTotal{small, 1}));
        QCOMPARE(r.total(FileCategory::application), (CategoryTotal{big->size, 1}));

        // Live: shown as a file, zero while measured, its size once done.
        bool sawMeasuring = false;
        for (const ScanProgress &p : run.published)
            for (const DiscoveredEntry &e : p.discovered) {
                if (e.path != root + "/Big.app")
                    continue;
                QVERIFY(!e.isDirectory);
                QVERIFY(e.artifactKind.isNull());
                if (e.measuring) {
                    sawMeasuring = true;
                    QCOMPARE(e.size, 0);
                } else {
                    QCOMPARE(e.size, big->size);
                }
            }
        QVERIFY(sawMeasuring);
        QCOMPARE(run.published.first().discovered.size(), 1); // published the moment it was found
    }

    void packageAtTheRootIsWalkedAsAFolder()
    {
        QTemporaryDir tmp;
        const QByteArray root = tempRoot(tmp) + "/Root.app";
        file(root + "/Contents/MacOS/bin", 5000);
        file(root + "/Contents/Plugins/Inner.plugin/code", 5000);

        SCAN(run, root);
        const ScanResult &r = *run.result;
        QVERIFY(r.node(root + "/Contents/MacOS"));
        QVERIFY(findFile(r, root + "/Contents/MacOS/bin"));
        // Packages below the root are still packages.
        const FileItem *inner = findFile(r, root + "/Contents/Plugins/Inner.plugin");
        QVERIFY(inner && inner->isPackage);
        QCOMPARE(r.totalDirs, 5);
    }

    void packagesAsFoldersWhenAskedTo()
    {
        QTemporaryDir tmp;
        const QByteArray root = tempRoot(tmp);
        file(root + "/Tool.APP/Contents/bin", 5000); // the extension is found case-insensitively

        SCAN(on, root);
        QVERIFY(findFile(*on.result, root + "/Tool.APP"));
        SCAN(off, root, options(1, false));
        QVERIFY(!findFile(*off.result, root + "/Tool.APP"));
        QVERIFY(off.result->node(root + "/Tool.APP/Contents"));
        QCOMPARE(off.result->root->size, on.result->root->size);
    }

    void exclusions_data()
    {
        QTest::addColumn<QByteArray>("excluded"); // relative to the root; "=" is the root itself
        QTest::addColumn<bool>("skipped");
        QTest::newRow("exact") << QByteArray("/skip") << true;
        QTest::newRow("trailing slash") << QByteArray("/skip/") << true;
        QTest::newRow("dots and doubled slashes") << QByteArray("/keep/..//skip/.") << true;
        QTest::newRow("the root itself") << QByteArray("=") << false;
        QTest::newRow("the root with a slash") << QByteArray("=/") << false;
        QTest::newRow("a prefix only") << QByteArray("/ski") << false;
        QTest::newRow("decomposed accent") << QByteArray("/cafe\xcc\x81") << true;
    }

    void exclusions()
    {
        QFETCH(QByteArray, excluded);
        QFETCH(bool, skipped);
        QTemporaryDir tmp;
        const QByteArray root = tempRoot(tmp);
        file(root + "/keep/a.txt", 4000);
        file(root + "/skip/b.mov", 90000);
        file(root + "/skip/node_modules/x/index.js", 900);
        file(root + "/skip/inner/c", 100);
        file(root + "/caf\xc3\xa9/d", 100); // precomposed on disk
        const QByteArray path = excluded.startsWith('=') ? root + excluded.mid(1) : root + excluded;
        const QByteArray target = excluded.startsWith("/cafe") ? root + "/caf\xc3\xa9" : root + "/skip";

        SCAN(run, root, options(1, true, false, {path}));
        const ScanResult &r = *run.result;
        QVERIFY(findFile(r, root + "/keep/a.txt"));
        if (skipped) {
            // No trace at all: no node, no counts, no listing, no artefact, no live entry.
            QVERIFY(!r.node(target));
            QCOMPARE(r.root->size, Fixtures::allocatedBelow(root) - Fixtures::allocatedBelow(target));
            QVERIFY(!hasDiscovered(run.published, target));
            for (const FileItem &f : r.files)
                QVERIFY(!f.path.startsWith(target + '/'));
            if (target.endsWith("skip")) {
                QCOMPARE(r.totalDirs, 3); // root keep café
                QVERIFY(r.artifacts.empty());
                QVERIFY(!r.categoryTotals.count(FileCategory::video));
            }
        } else {
            QCOMPARE(r.root->size, Fixtures::allocatedBelow(root));
            QCOMPARE(r.artifacts.size(), size_t(1));
        }
    }

    void anExcludedFileIsStillCounted()
    {
        QTemporaryDir tmp;
        const QByteArray root = tempRoot(tmp);
        file(root + "/a/file.bin", 5000);
        SCAN(run, root, options(1, true, false, {root + "/a/file.bin"}));
        QVERIFY(findFile(*run.result, root + "/a/file.bin"));
    }

    void hiddenEntries()
    {
        QTemporaryDir tmp;
        const QByteArray root = tempRoot(tmp);
        file(root + "/proj/.venv/pyvenv.cfg", 100);
        file(root + "/proj/.venv/lib/site.py", 3000);
        file(root + "/swift/Package.swift", 100);
        file(root + "/swift/.build/debug/app", 8000);
        file(root + "/.config/x", 100);
        file(root + "/visible/.profile", 100);
        file(root + "/visible/shown.txt", 100);

        SCAN(all, root, options(1, true, false));
        QCOMPARE(all.result->artifacts.size(), size_t(2));
        QCOMPARE(all.result->totalFiles, 7);

        // Hidden folders go before the artefact rules ever see them.
        SCAN(run, root, options(1, true, true));
        const ScanResult &r = *run.result;
        QVERIFY(r.artifacts.empty());
        QVERIFY(!r.node(root + "/proj/.venv"));
        QVERIFY(!r.node(root + "/.config"));
        QCOMPARE(r.totalFiles, 2); // Package.swift and shown.txt
        QCOMPARE(r.totalDirs, 4);  // root proj swift visible
        QVERIFY(!hasDiscovered(run.published, root + "/.config"));
    }

    void artefactsNeverNest()
    {
        QTemporaryDir tmp;
        const QByteArray root = tempRoot(tmp);
        file(root + "/app/package.json", 100);
        file(root + "/app/node_modules/left/index.js", 5000);
        file(root + "/app/node_modules/left/node_modules/inner/index.js", 7000);
        file(root + "/app/node_modules/right/target/x", 100);
        file(root + "/app/node_modules/right/Cargo.toml", 100);
        file(root + "/rust/Cargo.toml", 100);
        file(root + "/rust/target/debug/bin", 20000);

        SCAN(run, root);
        const ScanResult &r = *run.result;
        QCOMPARE(r.artifacts.size(), size_t(2));
        const DirNodePtr outer = r.node(root + "/app/node_modules");
        const DevArtifact expectedNode{root + "/app/node_modules", QStringLiteral("Node.js dependencies"), outer->size,
                                       4};
        const DirNodePtr target = r.node(root + "/rust/target");
        const DevArtifact expectedRust{root + "/rust/target", QStringLiteral("Rust build"), target->size, 1};
        QVERIFY(std::find(r.artifacts.begin(), r.artifacts.end(), expectedNode) != r.artifacts.end());
        QVERIFY(std::find(r.artifacts.begin(), r.artifacts.end(), expectedRust) != r.artifacts.end());
        QCOMPARE(outer->artifactKind, QStringLiteral("Node.js dependencies"));
        QVERIFY(r.node(root + "/app/node_modules/left/node_modules")->artifactKind.isNull());
        QVERIFY(r.node(root + "/app/node_modules/right/target")->artifactKind.isNull());

        // The live entry of a root child carries its kind.
        bool seen = false;
        for (const ScanProgress &p : run.published)
            for (const DiscoveredEntry &e : p.discovered)
                if (e.path == root + "/rust") {
                    seen = true;
                    QVERIFY(e.isDirectory);
                    QVERIFY(e.artifactKind.isNull());
                }
        QVERIFY(seen);
    }

    void artefactAsARootChildIsShownLive()
    {
        QTemporaryDir tmp;
        const QByteArray root = tempRoot(tmp);
        file(root + "/node_modules/a/index.js", 100);
        SCAN(run, root);
        QVERIFY(!run.published.isEmpty());
        const DiscoveredEntry e = run.published.first().discovered.first();
        QCOMPARE(e.path, root + "/node_modules");
        QCOMPARE(e.artifactKind, QStringLiteral("Node.js dependencies"));
        QVERIFY(e.measuring);
    }

    void thresholds_data()
    {
        QTest::addColumn<qint64>("threshold");
        QTest::addColumn<int>("listed");
        QTest::newRow("zero behaves as one") << qint64(0) << 2;
        QTest::newRow("one") << qint64(1) << 2;
        QTest::newRow("one block") << qint64(4096) << 2;
        QTest::newRow("above the small ones") << qint64(40000) << 1;
    }

    void thresholds()
    {
        QFETCH(qint64, threshold);
        QFETCH(int, listed);
        QTemporaryDir tmp;
        const QByteArray root = tempRoot(tmp);
        file(root + "/empty.txt", 0);
        file(root + "/tiny.txt", 1);
        file(root + "/large.bin", 50000);
        {
            QFile sparse(QFile::decodeName(root + "/sparse.img"));
            QVERIFY(sparse.open(QIODevice::WriteOnly));
            QVERIFY(sparse.resize(10 * 1000 * 1000)); // no blocks allocated
        }

        SCAN(run, root, options(threshold), 500);
        const ScanResult &r = *run.result;
        QCOMPARE(r.totalFiles, 4);
        QCOMPARE(qsizetype(r.files.size()), listed);
        QVERIFY(!findFile(r, root + "/empty.txt"));
        QVERIFY(!findFile(r, root + "/sparse.img"));
        QCOMPARE(r.files.front().path, root + "/large.bin");
        QCOMPARE(r.lastID, 500 + listed);
        QCOMPARE(r.total(FileCategory::diskImage), (CategoryTotal{0, 1}));
        // Files under the threshold directly under the root never show live.
        QCOMPARE(hasDiscovered(run.published, root + "/tiny.txt"), listed == 2);
        QVERIFY(!hasDiscovered(run.published, root + "/empty.txt"));
    }

    void categoriesFromRawNames()
    {
        QTemporaryDir tmp;
        const QByteArray root = tempRoot(tmp);
        file(root + "/CLIP.MOV", 100);
        file(root + "/.mov", 100);
        file(root + "/ends-in-dot.", 100);
        file(root + "/long.abcdefghijklmnop", 100); // 16 bytes of extension
        file(root + "/long.abcdefghijklmno", 100);  // 15
        file(root + "/backup.tar.gz", 100);
        file(root + "/bad-\xff\xfe.PDF", 100);
        SCAN(run, root);
        const ScanResult &r = *run.result;
        auto categoryOf = [&r](const QByteArray &path) { return findFile(r, path)->category; };
        QCOMPARE(categoryOf(root + "/CLIP.MOV"), FileCategory::video);
        QCOMPARE(categoryOf(root + "/.mov"), FileCategory::other);
        QCOMPARE(categoryOf(root + "/ends-in-dot."), FileCategory::other);
        QCOMPARE(categoryOf(root + "/long.abcdefghijklmnop"), FileCategory::other);
        QCOMPARE(categoryOf(root + "/backup.tar.gz"), FileCategory::archive);
        QCOMPARE(categoryOf(root + "/bad-\xff\xfe.PDF"), FileCategory::document);
        QCOMPARE(r.total(FileCategory::other).count, 4);
        // QTemporaryDir removes by name as text, which can't spell this one.
        ::unlink((root + "/bad-\xff\xfe.PDF").constData());
    }

    void symbolicLinkAsTheRootIsFollowed()
    {
        QTemporaryDir tmp;
        const QByteArray root = tempRoot(tmp);
        file(root + "/real/a.txt", 5000);
        QVERIFY(::symlink((root + "/real").constData(), (root + "/alias").constData()) == 0);
        SCAN(run, root + "/alias/");
        QCOMPARE(run.result->root->name, root + "/alias");
        QVERIFY(findFile(*run.result, root + "/alias/a.txt"));
    }

    void noResultWithoutAFolder()
    {
        QTemporaryDir tmp;
        const QByteArray root = tempRoot(tmp);
        file(root + "/plain.txt", 10);
        QVERIFY(!scanTree(root + "/plain.txt").result);
        QVERIFY(!scanTree(root + "/missing").result);
    }

    void systemSkipsApplyOnlyBelowTheRoot()
    {
        // "/dev" is skipped in a scan of "/", yet it can be the root of a scan.
        const Run run = scanTree("/dev");
        QVERIFY(run.result);
        QCOMPARE(run.result->root->name, QByteArray("/dev"));
    }

    void cancelledBeforeTheWalk()
    {
        QTemporaryDir tmp;
        const QByteArray root = tempRoot(tmp);
        file(root + "/a", 10);
        const CancelTokenPtr token = makeCancelToken();
        token->cancel();
        QVERIFY(!scanTree(root, options(), 0, token).result);
    }

    // The token is read every 1024 entries and once more after the walk, so a
    // cancel among the last 1023 entries still counts. Here it comes as the
    // second child of the root is found, after some 1100 entries of a walk of
    // fewer than 2048.
    void cancelledInTheLastEntries()
    {
        QTemporaryDir tmp;
        const QByteArray root = tempRoot(tmp);
        folder(root + "/a");
        folder(root + "/b");
        // Fill whichever the walk meets first.
        file(root + "/a/probe", 0);
        file(root + "/b/probe", 0);
        const QByteArray first = Fixtures::filesInWalkOrder(root).first().startsWith(root + "/a/") ? "/a" : "/b";
        for (int i = 0; i < 1100; ++i)
            file(root + first + "/f" + QByteArray::number(i), 0);

        const CancelTokenPtr token = makeCancelToken();
        bool cancelledLate = false;
        const ScanResultPtr result = DiskScanner::scan(root, options(), 0, token, [&](const ScanProgress &p) {
            if (p.discovered.size() == 2) {
                cancelledLate = p.filesScanned > 1024;
                token->cancel();
            }
        });
        QVERIFY(cancelledLate);
        QVERIFY(!result);

        // The same walk without the cancel gives a result.
        QVERIFY(DiskScanner::scan(root, options(), 0, makeCancelToken(), {}));
    }

    void progressWhileMeasuring()
    {
        QTemporaryDir tmp;
        const QByteArray root = tempRoot(tmp);
        for (int i = 0; i < 3000; ++i)
            file(root + "/big/sub/f" + QByteArray::number(i), 1);
        file(root + "/big/top", 1);

        const Run run = scanTree(root);
        QVERIFY(run.result);
        // One publication when "big" is found, one periodic from entry 1024 on at most
        // every 0.1 s: no more than there were chances.
        QVERIFY(run.published.size() >= 1);
        QVERIFY(run.published.size() <= 3);
        for (const ScanProgress &p : run.published) {
            QCOMPARE(p.discovered.size(), 1);
            QVERIFY(p.discovered.first().measuring);
            QVERIFY(p.bytesScanned <= run.result->root->size);
        }
    }

    void usage()
    {
        QTemporaryDir tmp;
        const QByteArray root = tempRoot(tmp);
        file(root + "/a/one", 5000);
        Fixtures::hardLink(root + "/a/one", root + "/a/two");
        file(root + "/a/.hidden", 100);
        file(root + "/a/b/node_modules/x", 100);
        QVERIFY(::symlink("/usr", (root + "/a/usr").constData()) == 0);

        const DiskUsage dir = DiskScanner::usage(root + "/a/");
        QCOMPARE(dir, (DiskUsage{Fixtures::allocatedBelow(root + "/a"), 3, true, true}));

        const DiskUsage single = DiskScanner::usage(root + "/a/one");
        QCOMPARE(single.items, 1);
        QVERIFY(single.size >= 5000);

        const DiskUsage link = DiskScanner::usage(root + "/a/usr"); // measured as itself
        QCOMPARE(link.items, 1);
        QVERIFY(link.exists);

        QCOMPARE(DiskScanner::usage(root + "/missing"), (DiskUsage{0, 0, false, true}));
    }

    void usageStopsWhenCancelled()
    {
        QTemporaryDir tmp;
        const QByteArray root = tempRoot(tmp);
        for (int i = 0; i < 5000; ++i)
            file(root + "/f" + QByteArray::number(i), 0);
        const CancelTokenPtr token = makeCancelToken();
        token->cancel();
        const DiskUsage partial = DiskScanner::usage(root, token);
        QVERIFY(partial.items < 5000);
        QVERIFY(partial.exists);
        QCOMPARE(DiskScanner::usage(root).items, 5000);
    }
};

SORVEL_TEST(TestDiskScanner);
#include "tst_diskscanner.moc"
