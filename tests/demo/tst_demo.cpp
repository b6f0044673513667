#include "TestMain.h"

#include "core/Paths.h"
#include "demo/Demo.h"

#include <QDateTime>
#include <QSet>

namespace {

// Walks the tree and checks that every node's figures are the sums of what
// lies below it. Returns the number of nodes.
int checkTree(const DirNodePtr &node, QStringList &problems)
{
    int nodes = 1;
    qint64 size = node->smallFilesSize;
    qint64 files = 0;
    for (const FileItem &f : node->files) {
        size += f.size;
        files += 1;
        if (f.parentNode() != node || f.path != Paths::join(node->path(), f.name))
            problems << QStringLiteral("file %1 misplaced").arg(Paths::toDisplay(f.path));
    }
    for (const DirNodePtr &child : node->children) {
        nodes += checkTree(child, problems);
        size += child->size;
        files += child->fileCount;
        if (child->parentNode() != node)
            problems << QStringLiteral("%1 has the wrong parent").arg(Paths::toDisplay(child->path()));
    }
    if (size != node->size)
        problems
            << QStringLiteral("%1: size %2, parts %3").arg(Paths::toDisplay(node->path())).arg(node->size).arg(size);
    // Small files are counted in fileCount without a FileItem.
    if (node->fileCount < files)
        problems << QStringLiteral("%1: too few files").arg(Paths::toDisplay(node->path()));
    for (size_t i = 1; i < node->children.size(); ++i)
        if (node->children[i - 1]->size < node->children[i]->size)
            problems << QStringLiteral("%1: children unsorted").arg(Paths::toDisplay(node->path()));
    return nodes;
}

int countFillers(const DirNodePtr &node)
{
    int n = node->smallFilesSize > 0 ? 1 : 0;
    for (const DirNodePtr &child : node->children)
        n += countFillers(child);
    return n;
}

const FileItem *fileAt(const ScanResult &result, const QByteArray &below)
{
    for (const FileItem &f : result.files)
        if (f.path == QByteArray(Demo::home) + "/" + below)
            return &f;
    return nullptr;
}

} // namespace

class TestDemo : public QObject
{
    Q_OBJECT

private slots:
    void isOn_data()
    {
        QTest::addColumn<QByteArrayList>("arguments");
        QTest::addColumn<bool>("on");
        QTest::newRow("none") << QByteArrayList{"app"} << false;
        QTest::newRow("first") << QByteArrayList{"app", "-demo"} << true;
        QTest::newRow("among others") << QByteArrayList{"app", "-section", "old", "-demo", "-scan", "/x"} << true;
        QTest::newRow("double dash") << QByteArrayList{"app", "--demo"} << false;
        QTest::newRow("as a value") << QByteArrayList{"app", "-scan", "-demox"} << false;
    }

    void isOn()
    {
        QFETCH(QByteArrayList, arguments);
        QFETCH(bool, on);
        QCOMPARE(Demo::isOn(arguments), on);
    }

    void fixedFigures()
    {
        const VolumeInfo v = Demo::volume();
        QCOMPARE(v.url, QByteArray("/"));
        QCOMPARE(v.name, u"Macintosh HD"_qs);
        QCOMPARE(v.total, 994662584320);
        QCOMPARE(v.available, 131000000000);
        QVERIFY(v.isInternal && v.isRoot);

        const auto m = Demo::measurements();
        QCOMPARE(m.size(), 8);
        QCOMPARE(m.value(u"caches"_qs), (DiskUsage{12640000000, 48210, true, true}));
        QCOMPARE(m.value(u"installers"_qs), (DiskUsage{14820000000, 5, true, true}));
        for (const DiskUsage &u : m)
            QVERIFY(u.exists && u.readable && u.size > 0);

        const auto caches = Demo::cacheContents();
        QCOMPARE(caches.size(), 10);
        QCOMPARE(caches.first(), (JunkEntry{"/Users/sample/Library/Caches/com.spotify.client", 3140000000, true}));
        QCOMPARE(caches.last(), (JunkEntry{"/Users/sample/Library/Caches/node-gyp", 170000000, true}));
        for (qsizetype i = 1; i < caches.size(); ++i)
            QVERIFY(caches[i - 1].size > caches[i].size);
    }

    void treeIsConsistent()
    {
        const ScanResultPtr r = Demo::scanResult(0);
        QCOMPARE(r->root->name, QByteArray(Demo::home));
        QStringList problems;
        const int nodes = checkTree(r->root, problems);
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join(u"; ")));
        QCOMPARE(r->totalFiles, r->root->fileCount);
        QVERIFY(nodes >= 40 && nodes <= 70);
        QVERIFY(r->files.size() >= 30);
        QCOMPARE(r->unreadableCount, 0);
        QCOMPARE(r->duration, 6.4);
        QVERIFY(qAbs(r->date - QDateTime::currentMSecsSinceEpoch() / 1000.0) < 60);
        for (size_t i = 1; i < r->files.size(); ++i)
            QVERIFY(r->files[i - 1].size >= r->files[i].size);
        for (size_t i = 1; i < r->artifacts.size(); ++i)
            QVERIFY(r->artifacts[i - 1].size >= r->artifacts[i].size);

        QByteArrayList top;
        for (const DirNodePtr &child : r->root->children)
            top.append(child->name);
        for (const char *name :
             {"Movies", "Projects", "Downloads", "Pictures", "Music", "Documents", "Desktop", "VirtualBox VMs",
              "Creative Cloud Files", "Applications", "go", "Zotero", ".npm", ".cache", ".gradle", "Library"})
            QVERIFY2(top.contains(name), name);
    }

    void categoriesAddUpToTheRoot()
    {
        const ScanResultPtr r = Demo::scanResult(0);
        qint64 size = 0, count = 0;
        for (const auto &[category, total] : r->categoryTotals) {
            size += total.size;
            count += total.count;
        }
        // Each filler loses at most two bytes and two files to the thirds.
        const int fillers = countFillers(r->root);
        QVERIFY(r->root->size - size >= 0 && r->root->size - size <= 2 * fillers);
        QVERIFY(r->root->fileCount - count >= 0 && r->root->fileCount - count <= 2 * fillers);
    }

    void tellingRows()
    {
        const ScanResultPtr r = Demo::scanResult(0);
        const double now = r->date;
        struct Row {
            const char *path;
            qint64 size;
            double age; // seconds; 0: not checked
            bool isPackage;
            FileCategory category;
        };
        const Row rows[] = {
            {"Movies/Iceland Trip 4K.mov", 18400000000, 36288000, false, FileCategory::video},
            {"Movies/Drone Footage/DJI_0412.MP4", 6210000000, 25920000, false, FileCategory::video},
            {"Downloads/Xcode_16.xip", 7940000000, 0, false, FileCategory::archive},
            {"Downloads/ubuntu-24.04-desktop.iso", 6110000000, 0, false, FileCategory::diskImage},
            {"VirtualBox VMs/Windows 11/Windows 11.vdi", 27900000000, 0, false, FileCategory::diskImage},
            {"Pictures/Photos Library.photoslibrary", 34200000000, 259200, true, FileCategory::other},
            {"Music/Logic Projects/Album Demo.logicx", 3810000000, 259200, true, FileCategory::audio},
            {"Documents/Thesis Draft.pages", 210000000, 259200, true, FileCategory::document},
        };
        for (const Row &row : rows) {
            const FileItem *f = fileAt(*r, row.path);
            QVERIFY2(f, row.path);
            QCOMPARE(f->size, row.size);
            QCOMPARE(f->logicalSize, row.size);
            QCOMPARE(f->isPackage, row.isPackage);
            QCOMPARE(f->category, row.category);
            QCOMPARE(f->modified, f->accessed);
            if (row.age > 0)
                QVERIFY(qAbs(now - row.age - f->accessed) < 1);
        }
        const DirNodePtr caches = r->node("/Users/sample/Library/Caches");
        QVERIFY(caches);
        QCOMPARE(caches->size, 12640000000);
        QCOMPARE(caches->fileCount, 48210);
        QCOMPARE(r->node("/Users/sample/Library/Developer")->size, 15200000000);

        // Forgotten files and recent ones both exist.
        int old = 0, recent = 0;
        for (const FileItem &f : r->files) {
            old += now - f.accessed >= 365 * 86400.0 ? 1 : 0;
            recent += now - f.accessed <= 30 * 86400.0 ? 1 : 0;
        }
        QVERIFY(old >= 5);
        QVERIFY(recent >= 3);
    }

    void artifacts()
    {
        const ScanResultPtr r = Demo::scanResult(0);
        const DevArtifact expected[] = {
            {"/Users/sample/Projects/pixel-quest/target", u"Rust build"_qs, 3620000000, 14100},
            {"/Users/sample/.gradle", u"Gradle cache"_qs, 3420000000, 40500},
            {"/Users/sample/Projects/orbit-ios/.build", u"Swift build"_qs, 2410000000, 9020},
            {"/Users/sample/Projects/atlas-web/node_modules", u"Node.js dependencies"_qs, 1940000000, 48200},
            {"/Users/sample/Projects/nimbus-api/.venv", u"Python virtualenv"_qs, 840000000, 21300},
            {"/Users/sample/Projects/atlas-web/.next", u"Next.js build"_qs, 620000000, 3100},
        };
        QCOMPARE(r->artifacts.size(), std::size(expected));
        for (size_t i = 0; i < std::size(expected); ++i) {
            QCOMPARE(r->artifacts[i], expected[i]);
            const DirNodePtr node = r->node(expected[i].path);
            QVERIFY(node);
            QCOMPARE(node->artifactKind, expected[i].kind);
            QCOMPARE(node->size, expected[i].size);
        }
    }

    void idsAreRepeatable_data()
    {
        QTest::addColumn<qint64>("firstID");
        QTest::newRow("0") << qint64(0);
        QTest::newRow("after a scan") << qint64(123456);
    }

    void idsAreRepeatable()
    {
        QFETCH(qint64, firstID);
        const ScanResultPtr a = Demo::scanResult(firstID);
        const ScanResultPtr b = Demo::scanResult(firstID);
        QVERIFY(a->root != b->root); // a fresh tree each time
        QCOMPARE(a->files.size(), b->files.size());
        QSet<qint64> ids;
        for (size_t i = 0; i < a->files.size(); ++i) {
            QCOMPARE(a->files[i].id, b->files[i].id);
            QCOMPARE(a->files[i].path, b->files[i].path);
            ids.insert(a->files[i].id);
        }
        QCOMPARE(ids.size(), qsizetype(a->files.size()));
        QCOMPARE(a->lastID, firstID + qint64(a->files.size()));
        for (qint64 id : ids)
            QVERIFY(id >= firstID && id < a->lastID);
    }
};

SORVEL_TEST(TestDemo);
#include "tst_demo.moc"
