#include "TestMain.h"

#include "core/ScanResult.h"

namespace {

DirNodePtr addDir(const DirNodePtr &parent, const char *name, qint64 size = 0)
{
    auto node = std::make_shared<DirNode>(QByteArray(name), parent);
    node->size = size;
    parent->children.push_back(node);
    return node;
}

FileItem fileIn(const DirNodePtr &dir, qint64 id, const char *name, qint64 size)
{
    FileItem f;
    f.id = id;
    f.name = name;
    f.path = dir->path() + "/" + name;
    f.size = size;
    f.parent = dir;
    return f;
}

} // namespace

class TestScanModel : public QObject
{
    Q_OBJECT

private slots:
    void nodeAt()
    {
        ScanResult r;
        r.root = std::make_shared<DirNode>("/Users/a");
        const auto docs = addDir(r.root, "Docs");
        const auto deep = addDir(docs, "Deep");
        docs->files.push_back(fileIn(docs, 1, "report.pdf", 10));

        QCOMPARE(r.node("/Users/a"), r.root);
        QCOMPARE(r.node("/Users/a/Docs/"), docs);
        QCOMPARE(r.node("/Users/a//Docs///Deep"), deep);
        QCOMPARE(r.node("/Users/ab/c"), DirNodePtr());
        QCOMPARE(r.node("/Users/a/Docs/report.pdf"), DirNodePtr());
        QCOMPARE(r.node("/Users/a/docs"), DirNodePtr()); // case matters
    }

    void nodeAtUnderSlashRootAndCanonically()
    {
        ScanResult r;
        r.root = std::make_shared<DirNode>("/");
        const auto usr = addDir(r.root, "usr");
        const auto lib = addDir(usr, "lib");
        QCOMPARE(r.node("/"), r.root);
        QCOMPARE(r.node("/usr/lib/"), lib);
        QCOMPARE(lib->path(), QByteArray("/usr/lib"));
        const auto cafe = addDir(usr, "Caf\xc3\xa9");
        const auto raw = addDir(usr, "raw\xff");
        QCOMPARE(r.node("/usr/Cafe\xcc\x81"), cafe);
        QCOMPARE(r.node("/usr/raw\xff"), raw);
        QCOMPARE(r.node("/usr/raw\xfe"), DirNodePtr());
    }

    void sortIsStableAndBySize()
    {
        auto root = std::make_shared<DirNode>("/r");
        const auto a = addDir(root, "a", 5);
        const auto b = addDir(root, "b", 9);
        const auto c = addDir(root, "c", 5);
        const auto d = addDir(root, "d", 9);
        root->files = {fileIn(root, 1, "x", 3), fileIn(root, 2, "y", 7), fileIn(root, 3, "z", 3)};
        a->files = {fileIn(a, 4, "p", 1), fileIn(a, 5, "q", 2)};
        root->sortRecursively();
        QCOMPARE(root->children, (std::vector<DirNodePtr>{b, d, a, c}));
        QCOMPARE((QList<qint64>{root->files[0].id, root->files[1].id, root->files[2].id}), (QList<qint64>{2, 1, 3}));
        QCOMPARE(a->files[0].id, 5);
    }

    // Far deeper than the call stack allows for recursion: sorting, computing a
    // path and letting the whole tree go must all work without it.
    void deepChain()
    {
        constexpr int depth = 200000;
        auto root = std::make_shared<DirNode>("/deep");
        DirNodePtr tip = root;
        std::weak_ptr<DirNode> watch;
        for (int i = 0; i < depth; ++i) {
            auto next = std::make_shared<DirNode>("d", tip);
            next->size = depth - i;
            // Siblings of equal size at every tenth level keep their order.
            if (i % 10000 == 0) {
                auto twin = std::make_shared<DirNode>("twin", tip);
                twin->size = next->size;
                tip->children.push_back(twin);
            }
            tip->children.push_back(next);
            tip = next;
        }
        watch = tip;
        root->sortRecursively();
        DirNodePtr n = root;
        int level = 0;
        while (!n->children.empty()) {
            if (level % 10000 == 0) {
                QCOMPARE(n->children.size(), std::size_t(2));
                QCOMPARE(n->children[0]->name, QByteArray("twin"));
            }
            n = n->children.back();
            ++level;
        }
        QCOMPARE(level, depth);
        QCOMPARE(tip->path().size(), qsizetype(5 + 2 * depth));
        n.reset();
        tip.reset();
        root.reset();
        QVERIFY(watch.expired());
    }

    void parentsReadAbsentOnceTheTreeIsGone()
    {
        FileItem kept;
        DirNodePtr keptNode;
        {
            auto result = std::make_shared<ScanResult>();
            result->root = std::make_shared<DirNode>("/r");
            const auto sub = addDir(result->root, "sub");
            const auto subsub = addDir(sub, "subsub");
            sub->files.push_back(fileIn(sub, 7, "big.bin", 1000));
            result->files = sub->files;
            kept = result->files.front();
            keptNode = subsub;
            QCOMPARE(kept.parentNode(), sub);
            QCOMPARE(keptNode->parentNode(), sub);
        }
        QVERIFY(!kept.parentNode());
        QVERIFY(!keptNode->parentNode());
        QCOMPARE(keptNode->path(), QByteArray("subsub"));
        QCOMPARE(kept.path, QByteArray("/r/sub/big.bin"));
    }
};

SORVEL_TEST(TestScanModel);
#include "tst_scanmodel.moc"
