#include "ScanFixtures.h"
#include "TestMain.h"

#include "scan/DiskScanner.h"

#include <QTemporaryDir>

#include <cerrno>

#include <sys/stat.h>

using Fixtures::file;
using Fixtures::folder;

namespace {

// What a scan in the unprivileged child found, as lines of "prefix.key=value".
QByteArray describe(const QByteArray &prefix, const ScanResultPtr &r)
{
    if (!r)
        return prefix + ".result=none\n";
    QByteArray out;
    const auto add = [&](const char *key, const QByteArray &value) { out += prefix + '.' + key + '=' + value + '\n'; };
    add("unreadable", QByteArray::number(r->unreadableCount));
    add("samples", QByteArray::number(r->unreadableSamples.size()));
    QByteArrayList sorted = r->unreadableSamples;
    std::sort(sorted.begin(), sorted.end());
    add("sampleList", sorted.join(','));
    add("rootSize", QByteArray::number(r->root->size));
    add("dirs", QByteArray::number(r->totalDirs));
    add("files", QByteArray::number(r->totalFiles));
    add("fault", Fixtures::invariantFault(*r, 0).toUtf8());
    // How each folder was read: "name:error/partly/below" for the marked ones.
    QByteArrayList marks;
    std::vector<DirNodePtr> stack{r->root};
    while (!stack.empty()) {
        const DirNodePtr node = stack.back();
        stack.pop_back();
        if (node->unreadableBelow > 0)
            marks.append((node == r->root ? QByteArray(".") : node->name) + ':' + QByteArray::number(node->readError) +
                         '/' + QByteArray::number(node->partlyRead) + '/' + QByteArray::number(node->unreadableBelow));
        for (const DirNodePtr &child : node->children)
            stack.push_back(child);
    }
    std::sort(marks.begin(), marks.end());
    add("marks", marks.join(','));
    return out;
}

QByteArray value(const QByteArray &report, const QByteArray &key)
{
    for (const QByteArray &line : report.split('\n'))
        if (line.startsWith(key + '='))
            return line.mid(key.size() + 1);
    return "(missing " + key + ") in: " + report;
}

} // namespace

// Folders the scanning user may not read. CI runs as root, who reads everything,
// so the scans run as "nobody" in one forked child.
class TestUnreadable : public QObject
{
    Q_OBJECT

private slots:
    void unreadableFolders()
    {
        QTemporaryDir tmp;
        const QByteArray root = QFile::encodeName(tmp.path());
        ::chmod(root.constData(), 0755);
        QByteArrayList locked;
        const auto lock = [&locked](const QByteArray &path, mode_t mode = 0) {
            folder(path);
            locked.append(path);
            ::chmod(path.constData(), mode);
        };
        const QByteArray mixed = root + "/mixed";
        file(mixed + "/ok/a.bin", 5000);
        file(mixed + "/locked/inner.bin", 5000);
        lock(mixed + "/locked");
        lock(mixed + "/listless", 0311); // may be entered, not listed
        for (const char *name : {"/one", "/two", "/three"})
            file(mixed + "/blind" + name, 100);
        lock(mixed + "/blind", 0444); // listed, but nothing in it can be examined
        file(root + "/closed/x", 100);
        lock(root + "/closed");
        for (int i = 0; i < 205; ++i)
            lock(root + "/many/d" + QByteArray::number(i));
        file(root + "/a/reachable", 5000);
        lock(root + "/a/locked");

        const QByteArray report = Fixtures::asNobody([root, mixed] {
            ScanOptions options;
            options.minTrackedSize = 1;
            const auto scan = [&](const QByteArray &at) {
                return DiskScanner::scan(at, options, 0, makeCancelToken(), {});
            };
            const DiskUsage below = DiskScanner::usage(root + "/a");
            const DiskUsage closed = DiskScanner::usage(root + "/closed");
            // A removal takes the unreadable folders it took off the counts above.
            const ScanResultPtr trimmed = scan(mixed);
            trimmed->remove({mixed + "/blind", mixed + "/locked"}, {});
            return describe("mixed", scan(mixed)) + describe("closed", scan(root + "/closed")) +
                   describe("trimmed", trimmed) + describe("many", scan(root + "/many")) +
                   "usage=" + QByteArray::number(below.size) + ' ' + QByteArray::number(below.items) + ' ' +
                   QByteArray::number(below.readable) + ' ' + QByteArray::number(closed.exists) + ' ' +
                   QByteArray::number(closed.readable) + '\n';
        });
        for (const QByteArray &path : locked)
            ::chmod(path.constData(), 0755);

        // Unreadable folders are entered and counted as folders, simply empty;
        // entries that cannot be examined are counted too.
        QCOMPARE(value(report, "mixed.fault"), QByteArray());
        QCOMPARE(value(report, "mixed.unreadable"), QByteArray("5"));
        QCOMPARE(value(report, "mixed.sampleList"),
                 QByteArrayList({mixed + "/blind/one", mixed + "/blind/three", mixed + "/blind/two",
                                 mixed + "/listless", mixed + "/locked"})
                     .join(','));
        QCOMPARE(value(report, "mixed.dirs"), QByteArray("5"));
        QCOMPARE(value(report, "mixed.files"), QByteArray("1"));
        QCOMPARE(value(report, "mixed.rootSize").toLongLong(), Fixtures::allocatedBelow(mixed + "/ok"));
        // Each folder keeps why it could not be read: a folder that could not be
        // listed stands empty, one whose entries could not be examined is
        // partly read, and the folder above counts them all.
        const QByteArray eacces = QByteArray::number(EACCES);
        QCOMPARE(value(report, "mixed.marks"),
                 QByteArrayList({".:0/0/3", "blind:" + eacces + "/1/1", "listless:" + eacces + "/0/1",
                                 "locked:" + eacces + "/0/1"})
                     .join(','));
        QCOMPARE(value(report, "trimmed.fault"), QByteArray());
        QCOMPARE(value(report, "trimmed.marks"), QByteArrayList({".:0/0/1", "listless:" + eacces + "/0/1"}).join(','));
        // An unreadable root gives an empty result, not none.
        QCOMPARE(value(report, "closed.rootSize"), QByteArray("0"));
        QCOMPARE(value(report, "closed.unreadable"), QByteArray("1"));
        QCOMPARE(value(report, "closed.dirs"), QByteArray("1"));
        QCOMPARE(value(report, "closed.sampleList"), root + "/closed");
        QCOMPARE(value(report, "closed.marks"), ".:" + eacces + "/0/1");
        // Samples stop at 200.
        QCOMPARE(value(report, "many.unreadable"), QByteArray("205"));
        QCOMPARE(value(report, "many.samples"), QByteArray("200"));
        QCOMPARE(value(report, "many.dirs"), QByteArray("206"));
        struct stat st;
        QCOMPARE(::lstat((root + "/a/reachable").constData(), &st), 0);
        QCOMPARE(value(report, "usage"), QByteArray::number(qint64(st.st_blocks) * 512) + " 1 1 1 0");
    }
};

SORVEL_TEST(TestUnreadable);
#include "tst_unreadable.moc"
