#include "TestMain.h"

#include "core/Paths.h"
#include "demo/Demo.h"
#include "safety/SafetyGuard.h"

#include <QDateTime>
#include <QSet>

namespace {

// Walks the tree and checks that every node's figures are the sums of what
// lies below it: its size is its folders, its listed files and its small
// files; its file count is its folders' and one per listed file, plus the
// loose files exactly where small files are summed. Returns the number of
// nodes.
int checkTree(const DirNodePtr &node, QStringList &problems)
{
    int nodes = 1;
    const QString where = Paths::toDisplay(node->path());
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
        problems << QStringLiteral("%1: size %2, parts %3").arg(where).arg(node->size).arg(size);
    if (node->smallFilesSize > 0 ? node->fileCount <= files : node->fileCount != files)
        problems << QStringLiteral("%1: %2 files, parts %3, small files %4")
                        .arg(where)
                        .arg(node->fileCount)
                        .arg(files)
                        .arg(node->smallFilesSize);
    if (node->size == 0 || node->unreadableBelow != 0 || node->readError != 0)
        problems << QStringLiteral("%1: empty or unreadable").arg(where);
    for (size_t i = 1; i < node->children.size(); ++i)
        if (node->children[i - 1]->size < node->children[i]->size)
            problems << QStringLiteral("%1: children unsorted").arg(where);
    return nodes;
}

// Every folder and file name of the tree.
void collectNames(const DirNodePtr &node, QSet<QByteArray> &names)
{
    names.insert(node->name);
    for (const FileItem &f : node->files)
        names.insert(f.name);
    for (const DirNodePtr &child : node->children)
        collectNames(child, names);
}

int countFillers(const DirNodePtr &node)
{
    int n = node->smallFilesSize > 0 ? 1 : 0;
    for (const DirNodePtr &child : node->children)
        n += countFillers(child);
    return n;
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
        QVERIFY(v.isInternal && v.isRoot && v.available < v.total);
        for (const DiskUsage &u : Demo::measurements())
            QVERIFY(u.exists && u.readable && u.size > 0);
        // Every location lists what it holds, adding up to its figure.
        for (const Platform platform : {Platform::linux, Platform::macOS}) {
            const QMap<QString, DiskUsage> figures = Demo::measurements(platform);
            const auto contents = Demo::contents(platform);
            QCOMPARE(contents.size(), figures.size());
            for (auto it = figures.cbegin(); it != figures.cend(); ++it) {
                qint64 sum = 0;
                for (const JunkEntry &entry : contents.value(it.key()))
                    sum += entry.size;
                QCOMPARE(sum, it->size);
            }
        }
    }

    void treeIsConsistent_data()
    {
        QTest::addColumn<bool>("mac");
        QTest::newRow("linux") << false;
        QTest::newRow("macOS") << true;
    }

    void treeIsConsistent()
    {
        QFETCH(bool, mac);
        const Platform platform = mac ? Platform::macOS : Platform::linux;
        const ScanResultPtr r = Demo::scanResult(0, platform);
        QCOMPARE(r->root->name, Demo::home(platform));
        QStringList problems;
        const int nodes = checkTree(r->root, problems);
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join(u"; ")));
        QCOMPARE(r->totalFiles, r->root->fileCount);
        QCOMPARE(r->totalDirs, qint64(nodes) + (platform == Platform::macOS ? 4 : 0)); // and the packages
        QVERIFY(nodes >= 40 && nodes <= 70);
        QVERIFY(r->files.size() >= 30);
        QCOMPARE(r->unreadableCount, 0);
        QCOMPARE(r->duration, 6.4);
        QVERIFY(qAbs(r->date - QDateTime::currentMSecsSinceEpoch() / 1000.0) < 60);
        for (size_t i = 1; i < r->files.size(); ++i)
            QVERIFY(r->files[i - 1].size >= r->files[i].size);
        for (size_t i = 1; i < r->artifacts.size(); ++i)
            QVERIFY(r->artifacts[i - 1].size >= r->artifacts[i].size);

        // Lisbon's figure: two listed files and 4.2 GB of small ones.
        const DirNodePtr lisbon = r->node(Demo::home(platform) + "/Pictures/Shoots/Lisbon 2023");
        QVERIFY(lisbon);
        QCOMPARE(lisbon->size, qint64(6092000000));
        QCOMPARE(lisbon->smallFilesSize, qint64(4200000000));
        QCOMPARE(lisbon->fileCount, qint64(1802));

        // The home is named as the platform names homes and its folders.
        QByteArrayList top;
        for (const DirNodePtr &child : r->root->children)
            top.append(child->name);
        QVERIFY(r->root->name.startsWith(mac ? "/Users/" : "/home/"));
        for (const char *name : {"Projects", "Downloads", "Pictures", "Music", "Documents", "Desktop", "VirtualBox VMs",
                                 "Applications", "go", "Zotero", ".npm", ".cache", ".gradle"})
            QVERIFY2(top.contains(name), name);
        for (const char *name : {"Movies", "Library", "Creative Cloud Files"})
            QVERIFY2(top.contains(name) == mac, name);
        for (const char *name : {"Videos", ".local", ".config"})
            QVERIFY2(top.contains(name) != mac, name);
        if (!mac) {
            // Nothing of macOS's own below it either.
            QSet<QByteArray> names;
            collectNames(r->root, names);
            for (const QByteArray &name : names)
                for (const char *ext : {".app", ".dmg", ".pkg", ".xip", ".photoslibrary", ".logicx", ".pages"})
                    QVERIFY2(!name.endsWith(ext), name.constData());
            QVERIFY(!names.contains("Final Cut Exports"));
        }
    }

    // The guard judges the demo's home as a home: what it shows can be
    // selected. Judged as another user's home, all of it would be kept.
    void homeIsJudgedAsAHome()
    {
        for (const Platform platform : {Platform::linux, Platform::macOS}) {
            const ScanResultPtr r = Demo::scanResult(0, platform);
            const SafetyProfile own(platform, Demo::home(platform));
            QVERIFY(SafetyGuard::isProtected(Demo::home(platform), own));
            for (const FileItem &f : r->files)
                QVERIFY2(!SafetyGuard::isProtected(f.path, own), f.path.constData());
            QVERIFY(!SafetyGuard::isProtected(Demo::home(platform) + "/Projects/atlas-web", own));
        }
        const QByteArray file = Demo::home(Platform::linux) + "/Projects/nimbus-api/data/production-dump.sql";
        QVERIFY(SafetyGuard::isProtected(file, SafetyProfile(Platform::linux, "/home/someone")));
        if (Platform::current() == Platform::linux) {
            SafetyProfile::setStandardHome(Demo::home());
            QVERIFY(!SafetyGuard::isProtected(file));
            QCOMPARE(SafetyProfile::standard().home(), Demo::home());
            SafetyProfile::setStandardHome({});
            QCOMPARE(SafetyProfile::standard().home(), Platform::homeDirectory());
        }
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

    // The Forgotten shelf has something to show, and so has the recent end.
    void oldAndRecentFiles()
    {
        const ScanResultPtr r = Demo::scanResult(0, Platform::macOS);
        const double now = r->date;
        int old = 0, recent = 0;
        for (const FileItem &f : r->files) {
            old += now - f.accessed >= 365 * 86400.0 ? 1 : 0;
            recent += now - f.accessed <= 30 * 86400.0 ? 1 : 0;
        }
        QVERIFY(old >= 5);
        QVERIFY(recent >= 3);
    }

    // Each artefact is a folder of the tree that carries its kind and size.
    void artifacts()
    {
        const ScanResultPtr r = Demo::scanResult(0);
        QVERIFY(r->artifacts.size() >= 3);
        for (const DevArtifact &artifact : r->artifacts) {
            const DirNodePtr node = r->node(artifact.path);
            QVERIFY2(node, artifact.path.constData());
            QCOMPARE(node->artifactKind, artifact.kind);
            QCOMPARE(node->size, artifact.size);
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
