#include "DeepTree.h"
#include "ScanFixtures.h"
#include "TestMain.h"

#include "scan/DiskScanner.h"

#include <QScopeGuard>
#include <QTemporaryDir>

#include <cstdlib>

#include <fcntl.h>
#include <sys/stat.h>
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
    // Every live entry published for `path`.
    QList<DiscoveredEntry> live(QByteArrayView path) const
    {
        QList<DiscoveredEntry> out;
        for (const ScanProgress &p : published)
            for (const DiscoveredEntry &e : p.discovered)
                if (e.path == path)
                    out.append(e);
        return out;
    }
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

} // namespace

Q_DECLARE_METATYPE(ScanOptions)

// Scans and checks the invariants of every node before the test looks further.
#define SCAN(run, ...)                                                                                                 \
    const Run run = scanTree(__VA_ARGS__);                                                                             \
    QVERIFY(run.result);                                                                                               \
    QCOMPARE(Fixtures::invariantFault(*run.result, run.result->lastID - qint64(run.result->files.size())), QString())

class TestDiskScanner : public QObject
{
    Q_OBJECT

    // A fresh folder for each test, gone after it.
    std::unique_ptr<QTemporaryDir> m_tmp;
    QByteArray root;

private slots:
    void init()
    {
        m_tmp = std::make_unique<QTemporaryDir>();
        QVERIFY(m_tmp->isValid());
        root = QFile::encodeName(m_tmp->path());
    }
    void cleanup() { m_tmp.reset(); }

    // Allocated bytes, hard links once at the first path met, links to
    // elsewhere nothing; the root's total is what an independent walk finds.
    void totalsAndHardLinks()
    {
        file(root + "/a/one.txt", 10);
        file(root + "/a/b/c/three.bin", 70000);
        file(root + "/empty", 0);
        file(root + "/x/original", 20000);
        Fixtures::hardLink(root + "/x/original", root + "/y/second");
        Fixtures::hardLink(root + "/x/original", root + "/z/deeper/third");
        folder(root + "/f/g");
        QVERIFY(::symlink("/usr", (root + "/a/link-to-usr").constData()) == 0);
        QVERIFY(::symlink("one.txt", (root + "/a/link-to-file").constData()) == 0);
        QByteArray first;
        for (const QByteArray &path : Fixtures::filesInWalkOrder(root))
            if (path.endsWith("original") || path.endsWith("second") || path.endsWith("third")) {
                first = path;
                break;
            }

        SCAN(run, root);
        const ScanResult &r = *run.result;
        QCOMPARE(r.root->size, Fixtures::allocatedBelow(root));
        QCOMPARE(r.root->name, root);
        QCOMPARE(r.totalFiles, 4);
        QCOMPARE(r.totalDirs, 10); // root a b c x y z deeper f g
        QCOMPARE(r.unreadableCount, 0);
        QVERIFY(!r.node(root + "/a/link-to-usr"));
        QVERIFY(r.date > 0 && r.duration >= 0);
        int listed = 0;
        for (const QByteArray &path : {root + "/x/original", root + "/y/second", root + "/z/deeper/third"})
            listed += findFile(r, path) ? 1 : 0;
        QCOMPARE(listed, 1);
        QVERIFY(findFile(r, first));
        const qint64 linkedSize = findFile(r, first)->size;
        for (const char *dir : {"/x", "/y", "/z/deeper"})
            QCOMPARE(r.node(root + dir)->size >= linkedSize, first.startsWith(root + dir + '/'));
    }

    void linkInsideAndOutsideAPackage()
    {
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
        QVERIFY(package && package->isPackage);
        QCOMPARE(findFile(r, root + "/bin/tool") == nullptr, packageFirst);
        QCOMPARE(package->size > 40000, packageFirst);
        QCOMPARE(r.node(root + "/bin")->fileCount, packageFirst ? 0 : 1);
    }

    void packageDirectlyUnderTheRoot()
    {
        file(root + "/Big.app/Contents/MacOS/big", 300000);
        file(root + "/Big.app/Contents/.hidden", 100); // counts inside a package even with hidden files skipped
        file(root + "/Small.bundle/x", 10);
        file(root + "/dir/y.txt", 10);
        for (int i = 0; i < 3000; ++i) // enough entries for progress while the package is measured
            file(root + "/Big.app/Contents/Resources/r" + QByteArray::number(i), 1);

        SCAN(run, root, options(100000, true, true));
        const ScanResult &r = *run.result;
        QCOMPARE(r.totalDirs, 4); // root, Big.app, Small.bundle, dir
        QVERIFY(!r.node(root + "/Big.app/Contents"));
        QCOMPARE(r.root->children.size(), size_t(1));
        const FileItem *big = findFile(r, root + "/Big.app");
        QVERIFY(big && big->isPackage);
        QCOMPARE(big->size, Fixtures::allocatedBelow(root + "/Big.app"));
        QCOMPARE(big->name, QByteArray("Big.app"));
        QCOMPARE(r.totalFiles, 3002 + 1 + 1);
        // Below the threshold: no record, but its size is in the sums.
        QVERIFY(!findFile(r, root + "/Small.bundle"));
        const qint64 small = Fixtures::allocatedBelow(root + "/Small.bundle");
        QCOMPARE(r.root->smallFilesSize, small);
        QCOMPARE(r.total(FileCategory::developer), (CategoryTotal{small, 1}));
        QCOMPARE(r.total(FileCategory::application), (CategoryTotal{big->size, 1}));
        // Live: shown as a file the moment it is found, zero while measured.
        QCOMPARE(run.published.first().discovered.size(), 1);
        bool sawMeasuring = false;
        for (const DiscoveredEntry &e : run.live(root + "/Big.app")) {
            QVERIFY(!e.isDirectory && e.artifactKind.isNull());
            sawMeasuring |= e.measuring;
            QCOMPARE(e.size, e.measuring ? 0 : big->size);
        }
        QVERIFY(sawMeasuring);
    }

    // A package as the root is walked as a folder, packages below it stay
    // packages, and with packages off every one is a folder.
    void packagesAsFolders()
    {
        const QByteArray app = root + "/Root.app";
        file(app + "/Contents/MacOS/bin", 5000);
        file(app + "/Contents/Plugins/Inner.PLUGIN/code", 5000);

        SCAN(on, app);
        QVERIFY(findFile(*on.result, app + "/Contents/MacOS/bin"));
        const FileItem *inner = findFile(*on.result, app + "/Contents/Plugins/Inner.PLUGIN");
        QVERIFY(inner && inner->isPackage);
        QCOMPARE(on.result->totalDirs, 5);
        SCAN(off, app, options(1, false));
        QVERIFY(!findFile(*off.result, app + "/Contents/Plugins/Inner.PLUGIN"));
        QVERIFY(off.result->node(app + "/Contents/Plugins/Inner.PLUGIN"));
        QCOMPARE(off.result->root->size, on.result->root->size);
    }

    void exclusions_data()
    {
        QTest::addColumn<QByteArray>("excluded"); // relative to the root; "=" is the root itself
        QTest::addColumn<bool>("skipped");
        QTest::newRow("dots and doubled slashes") << QByteArray("/keep/..//skip/.") << true;
        QTest::newRow("the root itself") << QByteArray("=") << false;
        QTest::newRow("a prefix only") << QByteArray("/ski") << false;
        QTest::newRow("a file is still counted") << QByteArray("/keep/a.txt") << false;
        QTest::newRow("decomposed accent") << QByteArray("/cafe\xcc\x81") << true;
    }

    void exclusions()
    {
        QFETCH(QByteArray, excluded);
        QFETCH(bool, skipped);
        file(root + "/keep/a.txt", 4000);
        file(root + "/skip/b.mov", 90000);
        file(root + "/skip/node_modules/x/index.js", 900);
        file(root + "/caf\xc3\xa9/d", 100); // precomposed on disk
        const QByteArray path = excluded.startsWith('=') ? root + excluded.mid(1) : root + excluded;
        const QByteArray target = excluded.startsWith("/cafe") ? root + "/caf\xc3\xa9" : root + "/skip";

        SCAN(run, root, options(1, true, false, {path}));
        const ScanResult &r = *run.result;
        QVERIFY(findFile(r, root + "/keep/a.txt"));
        if (!skipped) {
            QCOMPARE(r.root->size, Fixtures::allocatedBelow(root));
            QCOMPARE(r.artifacts.size(), size_t(1));
            return;
        }
        // No trace at all: no node, no counts, no listing, no artefact, no live entry.
        QVERIFY(!r.node(target));
        QCOMPARE(r.root->size, Fixtures::allocatedBelow(root) - Fixtures::allocatedBelow(target));
        QVERIFY(run.live(target).isEmpty());
        for (const FileItem &f : r.files)
            QVERIFY(!f.path.startsWith(target + '/'));
        if (target.endsWith("skip")) {
            QCOMPARE(r.totalDirs, 3); // root keep café
            QVERIFY(r.artifacts.empty());
            QVERIFY(!r.categoryTotals.count(FileCategory::video));
        }
    }

    // Hidden folders go before the artefact rules ever see them.
    void hiddenEntries()
    {
        file(root + "/proj/.venv/pyvenv.cfg", 100);
        file(root + "/swift/Package.swift", 100);
        file(root + "/swift/.build/debug/app", 8000);
        file(root + "/.config/x", 100);
        file(root + "/visible/.profile", 100);
        file(root + "/visible/shown.txt", 100);

        SCAN(all, root, options(1, true, false));
        QCOMPARE(all.result->artifacts.size(), size_t(2));
        QCOMPARE(all.result->totalFiles, 6);
        SCAN(run, root, options(1, true, true));
        const ScanResult &r = *run.result;
        QVERIFY(r.artifacts.empty());
        QVERIFY(!r.node(root + "/proj/.venv"));
        QCOMPARE(r.totalFiles, 2); // Package.swift and shown.txt
        QCOMPARE(r.totalDirs, 4);  // root proj swift visible
        QVERIFY(run.live(root + "/.config").isEmpty());
    }

    void artefactsNeverNest()
    {
        file(root + "/app/package.json", 100);
        file(root + "/app/node_modules/left/index.js", 5000);
        file(root + "/app/node_modules/left/node_modules/inner/index.js", 7000);
        file(root + "/app/node_modules/right/target/x", 100);
        file(root + "/app/node_modules/right/Cargo.toml", 100);
        file(root + "/rust/Cargo.toml", 100);
        file(root + "/rust/target/debug/bin", 20000);
        file(root + "/node_modules/a/index.js", 100);

        SCAN(run, root);
        const ScanResult &r = *run.result;
        const auto expect = [&r](const QByteArray &path, const char *kind, int count) {
            return DevArtifact{path, QString::fromUtf8(kind), r.node(path)->size, count};
        };
        const std::vector<DevArtifact> expected{expect(root + "/app/node_modules", "Node.js dependencies", 4),
                                                expect(root + "/node_modules", "Node.js dependencies", 1),
                                                expect(root + "/rust/target", "Rust build", 1)};
        auto found = r.artifacts;
        std::sort(found.begin(), found.end(), [](const auto &a, const auto &b) { return a.path < b.path; });
        QCOMPARE(found, expected);
        QVERIFY(r.node(root + "/app/node_modules/left/node_modules")->artifactKind.isNull());
        QVERIFY(r.node(root + "/app/node_modules/right/target")->artifactKind.isNull());
        // The live entry of a root child carries its kind.
        const QList<DiscoveredEntry> modules = run.live(root + "/node_modules");
        QVERIFY(!modules.isEmpty() && modules.first().measuring);
        QCOMPARE(modules.first().artifactKind, QStringLiteral("Node.js dependencies"));
        const QList<DiscoveredEntry> rust = run.live(root + "/rust");
        QVERIFY(!rust.isEmpty() && rust.first().isDirectory && rust.first().artifactKind.isNull());
    }

    void thresholds_data()
    {
        QTest::addColumn<qint64>("threshold");
        QTest::addColumn<int>("listed");
        QTest::newRow("zero behaves as one") << qint64(0) << 2;
        QTest::newRow("one block") << qint64(4096) << 2;
        QTest::newRow("above the small ones") << qint64(40000) << 1;
    }

    void thresholds()
    {
        QFETCH(qint64, threshold);
        QFETCH(int, listed);
        file(root + "/empty.txt", 0);
        file(root + "/tiny.txt", 1);
        file(root + "/large.bin", 50000);
        QFile sparse(QFile::decodeName(root + "/sparse.img"));
        QVERIFY(sparse.open(QIODevice::WriteOnly) && sparse.resize(10 * 1000 * 1000)); // no blocks allocated
        sparse.close();

        SCAN(run, root, options(threshold), 500);
        const ScanResult &r = *run.result;
        QCOMPARE(r.totalFiles, 4);
        QCOMPARE(qsizetype(r.files.size()), listed);
        QCOMPARE(r.files.front().path, root + "/large.bin");
        QCOMPARE(r.lastID, 500 + listed);
        QCOMPARE(r.total(FileCategory::diskImage), (CategoryTotal{0, 1}));
        // Files under the threshold directly under the root never show live.
        QCOMPARE(!run.live(root + "/tiny.txt").isEmpty(), listed == 2);
        QVERIFY(run.live(root + "/empty.txt").isEmpty());
    }

    // Names reach the categories as raw bytes, not as text.
    void categoriesFromRawNames()
    {
        file(root + "/CLIP.MOV", 100);
        file(root + "/.mov", 100);
        file(root + "/bad-\xff\xfe.PDF", 100);
        SCAN(run, root);
        QCOMPARE(findFile(*run.result, root + "/CLIP.MOV")->category, FileCategory::video);
        QCOMPARE(findFile(*run.result, root + "/.mov")->category, FileCategory::other);
        QCOMPARE(findFile(*run.result, root + "/bad-\xff\xfe.PDF")->category, FileCategory::document);
        ::unlink((root + "/bad-\xff\xfe.PDF").constData()); // QTemporaryDir can't spell it
    }

    void roots()
    {
        file(root + "/real/a.txt", 5000);
        QVERIFY(::symlink((root + "/real").constData(), (root + "/alias").constData()) == 0);
        SCAN(run, root + "/alias/"); // a link as the root is followed
        QCOMPARE(run.result->root->name, root + "/alias");
        QVERIFY(findFile(*run.result, root + "/alias/a.txt"));
        QVERIFY(!scanTree(root + "/real/a.txt").result);
        QVERIFY(!scanTree(root + "/missing").result);
        const CancelTokenPtr cancelled = makeCancelToken();
        cancelled->cancel();
        QVERIFY(!scanTree(root, options(), 0, cancelled).result);
        // "/dev" is skipped in a scan of "/", yet it can be the root of a scan.
        QCOMPARE(scanTree("/dev").result->root->name, QByteArray("/dev"));
    }

    // The token is read every 1024 entries and once more after the walk: a
    // cancel as the second root child is found, after some 1100 entries of a
    // walk of fewer than 2048, still counts.
    void cancelledInTheLastEntries()
    {
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
        QVERIFY(DiskScanner::scan(root, options(), 0, makeCancelToken(), {}));
    }

    // One publication when "big" is found, then at most one every 0.1 s from
    // entry 1024 on: no more than there were chances.
    void progressWhileMeasuring()
    {
        for (int i = 0; i < 3000; ++i)
            file(root + "/big/sub/f" + QByteArray::number(i), 1);
        const Run run = scanTree(root);
        QVERIFY(run.result);
        QVERIFY(run.published.size() >= 1 && run.published.size() <= 3);
        for (const ScanProgress &p : run.published) {
            QCOMPARE(p.discovered.size(), 1);
            QVERIFY(p.discovered.first().measuring);
            QVERIFY(p.bytesScanned <= run.result->root->size);
        }
    }

    // A root with thousands of children: each of the first few hundred is
    // published as it is found, the rest at the usual rate, so the work does
    // not grow with the square of the children.
    void manyChildrenOfTheRoot()
    {
        for (int i = 0; i < 3000; ++i)
            file(root + "/f" + QByteArray::number(i), 1);
        const Run run = scanTree(root);
        QVERIFY(run.result);
        QVERIFY(run.published.size() >= 500);
        QVERIFY2(run.published.size() < 600, qPrintable(QString::number(run.published.size())));
        for (int i = 0; i < 500; ++i)
            QCOMPARE(run.published.at(i).discovered.size(), i + 1);
    }

    // Paths far beyond PATH_MAX (400 levels of 21-byte names): every file counts,
    // nothing is unreadable, and project files are found beside deep folders.
    void deeperThanPathMax()
    {
        const QByteArray deep = root + "/deep";
        folder(deep);
        const auto projects = [](int fd, int level) {
            if (level == 300) { // a Rust project, and a virtualenv beside it
                ::close(::openat(fd, "Cargo.toml", O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
                ::mkdirat(fd, "target", 0755);
                ::mkdirat(fd, "venv", 0755);
                ::close(::openat(fd, "venv/pyvenv.cfg", O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
            }
        };
        const auto removeDeep = qScopeGuard([&deep] { DeepTree::remove(deep); });
        QVERIFY(DeepTree::make(deep, 400, 21, 2, projects));
        SCAN(run, deep);
        const ScanResult &r = *run.result;
        QCOMPARE(r.unreadableCount, 0);
        QCOMPARE(r.totalFiles, 802); // 2 a level, Cargo.toml and pyvenv.cfg
        QCOMPARE(r.totalDirs, 403);
        QCOMPARE(r.artifacts.size(), size_t(2));
        QVERIFY(r.artifacts[0].path.size() > 300 * 22 && r.artifacts[0].path.startsWith(deep + '/'));
        QCOMPARE(DiskScanner::usage(deep).items, 802);
    }

    // A root reached through a symbolic link skips what lies below its real place,
    // as the real path names it; and a link to "/" skips the system's folders.
    void skipsThroughALinkedRoot()
    {
        char *resolved = ::realpath(root.constData(), nullptr);
        const QByteArray real = QByteArray(resolved) + "/real";
        std::free(resolved);
        file(real + "/keep/a", 100);
        file(real + "/skipme/b", 100);
        const QByteArray link = root + "/link";
        QVERIFY(::symlink(real.constData(), link.constData()) == 0);
        SCAN(run, link, options(1, true, false, {real + "/skipme"}));
        QVERIFY(findFile(*run.result, link + "/keep/a"));
        QVERIFY(!findFile(*run.result, link + "/skipme/b"));
        QCOMPARE(run.result->totalDirs, 2);

        const QByteArray slash = root + "/slash";
        QVERIFY(::symlink("/", slash.constData()) == 0);
        const QByteArrayList skips = DiskScanner::skippedPaths(slash, {"/x/y"});
        for (const QByteArray &path : {QByteArray("/dev"), slash + "/dev", QByteArray("/x/y"), slash + "/x/y"})
            QVERIFY2(skips.contains(path), path.constData());
        QVERIFY(!DiskScanner::skippedPaths(real, {}).contains(real + "/dev"));
    }

    // Listing folders ahead on other threads gives the very same result:
    // hard links counted at the first path, artefacts, packages, exclusions.
    void sameResultInParallel_data()
    {
        QTest::addColumn<unsigned>("seed");
        QTest::addColumn<ScanOptions>("rules");
        QTest::newRow("defaults") << 1u << options(1000);
        QTest::newRow("every file listed") << 2u << options(1);
        QTest::newRow("no packages") << 3u << options(1, false);
        QTest::newRow("hidden and excluded left out") << 4u << options(1, true, true, {"EXCLUDED"});
    }

    void sameResultInParallel()
    {
        QFETCH(unsigned, seed);
        QFETCH(ScanOptions, rules);
        Fixtures::randomTree(root + "/t", seed, 2500);
        for (QByteArray &path : rules.excludedPaths)
            path = root + "/t/src" + QByteArray::number(seed * 7);
        const auto scan = [&](DiskScanner::Walking walking) {
            const ScanResultPtr r = DiskScanner::scan(root + "/t", rules, 5, makeCancelToken(), {}, walking);
            return r ? Fixtures::describe(*r) : QByteArray("null");
        };
        const QByteArray one = scan(DiskScanner::Walking::oneThread);
        QVERIFY(one.contains("artefact"));
        QCOMPARE(scan(DiskScanner::Walking::parallel), one);
    }

    // The same when folders can't be read, seen by an unprivileged user.
    void sameResultInParallelWhenUnreadable()
    {
        ::chmod(root.constData(), 0755);
        Fixtures::randomTree(root + "/t", 9, 600);
        file(root + "/t/closed/y", 10);
        file(root + "/t/blind/sub/z", 10);
        file(root + "/t/listless/w", 10);
        ::chmod((root + "/t/closed").constData(), 0);
        ::chmod((root + "/t/blind").constData(), 0444);
        ::chmod((root + "/t/listless").constData(), 0311);
        const QByteArray outcome = Fixtures::asNobody([this] {
            const auto scan = [&](DiskScanner::Walking walking) {
                const ScanResultPtr r = DiskScanner::scan(root + "/t", options(1), 0, makeCancelToken(), {}, walking);
                return r ? Fixtures::describe(*r) : QByteArray("null");
            };
            const QByteArray one = scan(DiskScanner::Walking::oneThread);
            return one == scan(DiskScanner::Walking::parallel) ? QByteArray::number(one.count("unreadable ")) : one;
        });
        ::chmod((root + "/t/closed").constData(), 0755);
        ::chmod((root + "/t/blind").constData(), 0755);
        ::chmod((root + "/t/listless").constData(), 0755);
        QCOMPARE(outcome, QByteArray("3"));
    }

    void usage()
    {
        file(root + "/a/one", 5000);
        Fixtures::hardLink(root + "/a/one", root + "/a/two");
        file(root + "/a/.hidden", 100);
        file(root + "/a/b/node_modules/x", 100);
        QVERIFY(::symlink("/usr", (root + "/a/usr").constData()) == 0);
        QCOMPARE(DiskScanner::usage(root + "/a/"), (DiskUsage{Fixtures::allocatedBelow(root + "/a"), 3, true, true}));
        const DiskUsage single = DiskScanner::usage(root + "/a/one");
        QVERIFY(single.items == 1 && single.size >= 5000);
        const DiskUsage link = DiskScanner::usage(root + "/a/usr"); // measured as itself
        QVERIFY(link.items == 1 && link.exists);
        QCOMPARE(DiskScanner::usage(root + "/missing"), (DiskUsage{0, 0, false, true}));

        for (int i = 0; i < 5000; ++i)
            file(root + "/many/f" + QByteArray::number(i), 0);
        const CancelTokenPtr token = makeCancelToken();
        token->cancel();
        const DiskUsage partial = DiskScanner::usage(root + "/many", token);
        QVERIFY(partial.items < 5000 && partial.exists);
        QCOMPARE(DiskScanner::usage(root + "/many").items, 5000);
    }
};

SORVEL_TEST(TestDiskScanner);
#include "tst_diskscanner.moc"
