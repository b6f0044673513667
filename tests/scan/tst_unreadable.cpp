#include "ScanFixtures.h"
#include "TestMain.h"

#include "scan/DiskScanner.h"

#include <QTemporaryDir>

#include <sys/stat.h>

using Fixtures::file;
using Fixtures::folder;

namespace {

// What a scan in the unprivileged child found, as lines of "key=value".
QByteArray describe(const ScanResultPtr &r)
{
    if (!r)
        return "result=none\n";
    QByteArray out = "result=some\n";
    out += "unreadable=" + QByteArray::number(r->unreadableCount) + '\n';
    out += "samples=" + QByteArray::number(r->unreadableSamples.size()) + '\n';
    for (const QByteArray &s : r->unreadableSamples)
        out += "sample=" + s + '\n';
    out += "rootSize=" + QByteArray::number(r->root->size) + '\n';
    out += "dirs=" + QByteArray::number(r->totalDirs) + '\n';
    out += "files=" + QByteArray::number(r->totalFiles) + '\n';
    out += "fault=" + Fixtures::invariantFault(*r, 0).toUtf8() + '\n';
    return out;
}

QByteArray value(const QByteArray &report, const QByteArray &key)
{
    for (const QByteArray &line : report.split('\n'))
        if (line.startsWith(key + '='))
            return line.mid(key.size() + 1);
    return "(missing " + key + ") in: " + report;
}

QByteArrayList samples(const QByteArray &report)
{
    QByteArrayList out;
    for (const QByteArray &line : report.split('\n'))
        if (line.startsWith("sample="))
            out.append(line.mid(7));
    return out;
}

QByteArray scanAsNobody(const QByteArray &root)
{
    return Fixtures::asNobody([root] {
        ScanOptions options;
        options.minTrackedSize = 1;
        return describe(DiskScanner::scan(root, options, 0, makeCancelToken(), {}));
    });
}

// A tree the unprivileged user can reach, with folders it can't read. Their
// modes are restored at the end so the temporary folder can always be removed.
class Tree
{
public:
    Tree() : root(QFile::encodeName(m_tmp.path())) { ::chmod(root.constData(), 0755); }

    ~Tree()
    {
        for (const QByteArray &path : m_locked)
            ::chmod(path.constData(), 0755);
    }
    void lock(const QByteArray &path, mode_t mode = 0)
    {
        folder(path);
        m_locked.append(path);
        ::chmod(path.constData(), mode);
    }

private:
    QTemporaryDir m_tmp; // first, so it exists before `root` is read from it

public:
    const QByteArray root;

private:
    QByteArrayList m_locked;
};

} // namespace

// Folders the scanning user may not read. CI runs as root, who reads everything,
// so these scans run as "nobody" in a forked child.
class TestUnreadable : public QObject
{
    Q_OBJECT

private slots:
    void unreadableFoldersAreCountedAndKept()
    {
        Tree tree;
        const QByteArray root = tree.root;
        file(root + "/ok/a.bin", 5000);
        file(root + "/locked/inner.bin", 5000);
        tree.lock(root + "/locked");
        tree.lock(root + "/listless", 0311); // may be entered, not listed

        const QByteArray report = scanAsNobody(root);
        QCOMPARE(value(report, "result"), QByteArray("some"));
        QCOMPARE(value(report, "fault"), QByteArray());
        QCOMPARE(value(report, "unreadable"), QByteArray("2"));
        QByteArrayList found = samples(report);
        std::sort(found.begin(), found.end());
        QCOMPARE(found, (QByteArrayList{root + "/listless", root + "/locked"}));
        // Entered and counted as folders, simply empty.
        QCOMPARE(value(report, "dirs"), QByteArray("4"));
        QCOMPARE(value(report, "files"), QByteArray("1"));
        QCOMPARE(value(report, "rootSize").toLongLong(), Fixtures::allocatedBelow(root + "/ok"));
    }

    void entriesThatCannotBeExaminedAreCounted()
    {
        Tree tree;
        const QByteArray root = tree.root;
        file(root + "/blind/one", 100);
        file(root + "/blind/two", 100);
        file(root + "/blind/three", 100);
        tree.lock(root + "/blind", 0444); // listed, but nothing in it can be examined

        const QByteArray report = scanAsNobody(root);
        QCOMPARE(value(report, "fault"), QByteArray());
        QCOMPARE(value(report, "unreadable"), QByteArray("3"));
        QCOMPARE(value(report, "files"), QByteArray("0"));
        for (const QByteArray &sample : samples(report))
            QVERIFY(sample.startsWith(root + "/blind/"));
    }

    void anUnreadableRootGivesAnEmptyResult()
    {
        Tree tree;
        const QByteArray root = tree.root + "/closed";
        file(root + "/x", 100);
        tree.lock(root);

        const QByteArray report = scanAsNobody(root);
        QCOMPARE(value(report, "result"), QByteArray("some"));
        QCOMPARE(value(report, "rootSize"), QByteArray("0"));
        QCOMPARE(value(report, "unreadable"), QByteArray("1"));
        QCOMPARE(value(report, "dirs"), QByteArray("1"));
        QCOMPARE(samples(report), QByteArrayList{root});
    }

    void samplesStopAt200()
    {
        Tree tree;
        for (int i = 0; i < 205; ++i)
            tree.lock(tree.root + "/d" + QByteArray::number(i));
        const QByteArray report = scanAsNobody(tree.root);
        QCOMPARE(value(report, "unreadable"), QByteArray("205"));
        QCOMPARE(value(report, "samples"), QByteArray("200"));
        QCOMPARE(value(report, "dirs"), QByteArray("206"));
    }

    void usageOfUnreadableFolders()
    {
        Tree tree;
        const QByteArray root = tree.root;
        file(root + "/a/reachable", 5000);
        file(root + "/a/locked/hidden-away", 5000);
        tree.lock(root + "/a/locked");
        tree.lock(root + "/closed");

        const QByteArray report = Fixtures::asNobody([root] {
            const DiskUsage below = DiskScanner::usage(root + "/a");
            const DiskUsage closed = DiskScanner::usage(root + "/closed");
            return QByteArray::number(below.size) + ' ' + QByteArray::number(below.items) + ' ' +
                   QByteArray::number(below.readable) + ' ' + QByteArray::number(closed.exists) + ' ' +
                   QByteArray::number(closed.readable);
        });
        struct stat st;
        QCOMPARE(::lstat((root + "/a/reachable").constData(), &st), 0);
        const qint64 reachable = qint64(st.st_blocks) * 512;
        QCOMPARE(report, QByteArray::number(reachable) + " 1 1 1 0");
    }
};

SORVEL_TEST(TestUnreadable);
#include "tst_unreadable.moc"
