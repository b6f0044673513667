#include "TestMain.h"

#include "core/ScanResult.h"

namespace {

constexpr qint64 MB = 1000000;

// A hand-made scan of /r:
//   /r            a, ab, loose.txt rolled up (3 MB), other.bin listed (5 MB)
//   /r/a          f1.mov, f2.png, f3.pdf (10 MB each), 20 MB unlisted in 5 files
//   /r/a/nm       node_modules artefact, 4 MB unlisted in 2 files
//   /r/ab         1 MB unlisted, artefact "Rust build"
struct Scan {
    ScanResultPtr result = std::make_shared<ScanResult>();
    DirNodePtr root, a, nm, ab;
    qint64 nextID = 1;

    FileItem &list(const DirNodePtr &dir, const QByteArray &name, qint64 size, FileCategory category)
    {
        FileItem file;
        file.id = nextID++;
        file.path = dir->path() + '/' + name;
        file.name = name;
        file.size = size;
        file.category = category;
        file.parent = dir;
        dir->files.push_back(file);
        result->files.push_back(file);
        return result->files.back();
    }

    Scan()
    {
        root = std::make_shared<DirNode>("/r");
        a = std::make_shared<DirNode>("a", root);
        nm = std::make_shared<DirNode>("nm", a);
        ab = std::make_shared<DirNode>("ab", root);
        root->children = {a, ab};
        a->children = {nm};
        nm->artifactKind = QStringLiteral("Node.js dependencies");
        ab->artifactKind = QStringLiteral("Rust build");
        list(a, "f1.mov", 10 * MB, FileCategory::video);
        list(a, "f2.png", 10 * MB, FileCategory::image);
        list(a, "f3.pdf", 10 * MB, FileCategory::document);
        list(root, "other.bin", 5 * MB, FileCategory::other);
        nm->smallFilesSize = nm->size = 4 * MB;
        nm->fileCount = 2;
        a->smallFilesSize = 16 * MB;
        a->size = 50 * MB;
        a->fileCount = 3 + 3 + 2;
        ab->smallFilesSize = ab->size = 1 * MB;
        ab->fileCount = 1;
        root->smallFilesSize = 3 * MB;
        root->size = a->size + ab->size + 5 * MB + 3 * MB;
        root->fileCount = a->fileCount + ab->fileCount + 2;
        result->root = root;
        result->categoryTotals = {{FileCategory::video, {10 * MB, 1}},
                                  {FileCategory::image, {10 * MB, 1}},
                                  {FileCategory::document, {13 * MB, 2}},
                                  {FileCategory::other, {26 * MB, 8}}};
        result->artifacts = {{"/r/a/nm", nm->artifactKind, 4 * MB, 2}, {"/r/ab", ab->artifactKind, 1 * MB, 1}};
    }

    QByteArrayList listedPaths() const
    {
        QByteArrayList out;
        for (const FileItem &file : result->files)
            out << file.path;
        return out;
    }
    QByteArrayList artifactPaths() const
    {
        QByteArrayList out;
        for (const DevArtifact &artifact : result->artifacts)
            out << artifact.path;
        return out;
    }
};

QSet<QByteArray> set(std::initializer_list<QByteArray> paths) { return QSet<QByteArray>(paths); }

} // namespace

class TestApplyRemoval : public QObject
{
    Q_OBJECT

private slots:
    // Plain listed files, whole folders and loose files on real trees are
    // checked against a rescan in TestConsistency; these are the edge cases.
    // A folder that went whole: its listed files off their categories, the rest
    // of it off `other` by its size and a count of one; nothing counted twice
    // when a file and its folder both went; listed files larger than the folder
    // (hard links counted elsewhere) take nothing more off `other`.
    void wholeFolder_data()
    {
        QTest::addColumn<QByteArrayList>("paths");
        QTest::addColumn<qint64>("folderSize");
        QTest::addColumn<qint64>("otherLeft");
        QTest::newRow("alone") << QByteArrayList{"/r/a"} << 50 * MB << 6 * MB;
        QTest::newRow("with a file in it") << QByteArrayList{"/r/a/f1.mov", "/r/a"} << 50 * MB << 6 * MB;
        QTest::newRow("listed exceeds its size") << QByteArrayList{"/r/a"} << 20 * MB << 26 * MB;
    }

    void wholeFolder()
    {
        QFETCH(QByteArrayList, paths);
        QFETCH(qint64, folderSize);
        QFETCH(qint64, otherLeft);
        Scan scan;
        scan.root->size += folderSize - scan.a->size;
        scan.a->size = folderSize;
        const qint64 rootSize = scan.root->size, rootCount = scan.root->fileCount;
        scan.result->remove(QSet<QByteArray>(paths.begin(), paths.end()), {});
        QCOMPARE(scan.root->size, rootSize - folderSize);
        QCOMPARE(scan.root->fileCount, rootCount - 8);
        QCOMPARE(scan.root->children.size(), size_t(1));
        QCOMPARE(scan.result->total(FileCategory::video), (CategoryTotal{0, 0}));
        QCOMPARE(scan.result->total(FileCategory::document), (CategoryTotal{3 * MB, 1}));
        QCOMPARE(scan.result->total(FileCategory::other), (CategoryTotal{otherLeft, 7}));
        QCOMPARE(scan.listedPaths(), QByteArrayList{"/r/other.bin"});
        // The artefact inside went with it; the neighbour "/r/ab" stays.
        QCOMPARE(scan.artifactPaths(), QByteArrayList{"/r/ab"});
    }

    // A small file the scan rolled up: off its folder's loose sum, up the chain
    // and off the category of its extension.
    void looseSmallFile()
    {
        Scan scan;
        const qint64 rootSize = scan.root->size;
        scan.result->remove(set({"/r/a/nm/x.PDF"}), {{"/r/a/nm/x.PDF", 1 * MB}});
        QCOMPARE(scan.nm->smallFilesSize, 3 * MB);
        QCOMPARE(scan.nm->fileCount, 1);
        QCOMPARE(scan.a->size, 49 * MB);
        QCOMPARE(scan.root->size, rootSize - 1 * MB);
        QCOMPARE(scan.result->total(FileCategory::document), (CategoryTotal{12 * MB, 1}));
        // The artefact around it shrinks too.
        QCOMPARE(scan.result->artifacts.front(), (DevArtifact{"/r/a/nm", scan.nm->artifactKind, 3 * MB, 1}));
    }

    // Paths the scan does not know, vanished paths and the root change nothing.
    void nothingChanges_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<qint64>("size");
        QTest::newRow("vanished") << QByteArray("/r/a/gone.txt") << qint64(0);
        QTest::newRow("unknown size") << QByteArray("/r/a/other.txt") << qint64(-1);
        QTest::newRow("collapsed parent") << QByteArray("/r/hidden/x.txt") << qint64(MB);
        QTest::newRow("outside") << QByteArray("/elsewhere/x") << qint64(MB);
        QTest::newRow("root") << QByteArray("/r") << qint64(MB);
    }

    void nothingChanges()
    {
        QFETCH(QByteArray, path);
        QFETCH(qint64, size);
        Scan scan;
        const qint64 rootSize = scan.root->size;
        const auto totals = scan.result->categoryTotals;
        QHash<QByteArray, qint64> sizes;
        if (size >= 0)
            sizes.insert(path, size);
        scan.result->remove({path}, sizes);
        QCOMPARE(scan.root->size, rootSize);
        QCOMPARE(scan.result->categoryTotals, totals);
        QCOMPARE(scan.result->files.size(), size_t(4));
    }

    // Rough figures stop at 0 at every level, each on its own.
    void clampsAtZero()
    {
        Scan scan;
        scan.a->size = 5 * MB;
        scan.a->fileCount = 0;
        scan.root->size = 7 * MB;
        scan.result->categoryTotals[FileCategory::video] = {1, 0};
        scan.result->remove(set({"/r/a/f1.mov"}), {});
        QCOMPARE(scan.a->size, 0);
        QCOMPARE(scan.a->fileCount, 0);
        QCOMPARE(scan.root->size, 0);
        QCOMPARE(scan.result->total(FileCategory::video), (CategoryTotal{0, 0}));
    }

    // An artefact removed itself leaves the list; ids of dead parents still
    // leave the file list and their categories.
    void artefactAndDeadParent()
    {
        Scan scan;
        FileItem orphan;
        orphan.id = 99;
        orphan.path = "/r/gone/big.mov";
        orphan.size = 2 * MB;
        orphan.category = FileCategory::video;
        scan.result->files.push_back(orphan);
        scan.result->categoryTotals[FileCategory::video].size += 2 * MB;
        scan.result->categoryTotals[FileCategory::video].count += 1;
        scan.result->remove(set({"/r/ab", "/r/gone/big.mov"}), {});
        QCOMPARE(scan.artifactPaths(), QByteArrayList{"/r/a/nm"});
        QCOMPARE(scan.result->total(FileCategory::video), (CategoryTotal{10 * MB, 1}));
        QCOMPARE(scan.result->files.size(), size_t(4));
    }
};

SORVEL_TEST(TestApplyRemoval);
#include "tst_applyremoval.moc"
