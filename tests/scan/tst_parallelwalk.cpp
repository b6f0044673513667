#include "DeepTree.h"
#include "ScanFixtures.h"
#include "TestMain.h"

#include "scan/ParallelTreeWalk.h"
#include "scan/TreeWalk.h"

#include <QDir>
#include <QTemporaryDir>

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using Fixtures::file;
using Fixtures::folder;

namespace {

// One event as "kind level path inode error probe", skipping every folder whose
// name begins with `skipName`.
template <class Walk>
QByteArrayList events(Walk &walk, QByteArrayView skipName, int *maxDescriptors = nullptr)
{
    QByteArrayList out;
    typename Walk::Entry e;
    while (walk.next(e)) {
        static const char *const names[] = {"directory", "done", "unreadable", "nostat", "file", "symlink", "other"};
        QByteArray line = QByteArray(names[int(e.kind)]) + ' ' + QByteArray::number(e.level) + ' ' +
                          e.path.toByteArray() + ' ' + (e.st ? QByteArray::number(quint64(e.st->st_ino)) : "-") + ' ' +
                          QByteArray::number(e.error);
        if (e.kind == TreeWalk::Kind::directory && e.level > 0) {
            if constexpr (std::is_same_v<Walk, ParallelTreeWalk>)
                line += ' ' + walk.probed().toUtf8();
            else
                line += ' ' + QByteArray::number(::faccessat(walk.folderDescriptor(), "Cargo.toml", F_OK, 0) == 0);
            if (!skipName.isEmpty() && e.name.startsWith(skipName))
                walk.skip();
        }
        out.append(line);
        if (maxDescriptors && out.size() % 64 == 0)
            *maxDescriptors = std::max(*maxDescriptors, int(QDir("/proc/self/fd").count()));
    }
    return out;
}

QByteArrayList viaTreeWalk(const QByteArray &root, QByteArrayView skipName = {})
{
    TreeWalk walk(root, true);
    QByteArrayList out = events(walk, skipName);
    // The parallel walk's probe answers whether a project file lies beside.
    for (QByteArray &line : out)
        if (line.startsWith("directory") && !line.startsWith("directory 0 "))
            line = line.left(line.size() - 1) + (line.endsWith('1') ? "yes" : "");
    return out;
}

// `readyEntries` is also how many entries of one folder a lister examines; the
// reader examines the rest.
ParallelTreeWalk::Options parallel(int threads, int readyFolders, int readyEntries = 4096)
{
    ParallelTreeWalk::Options options;
    options.threads = threads;
    options.readyFolders = readyFolders;
    options.readyEntries = readyEntries;
    options.probe = [](QByteArrayView, int parentFd) {
        return ::faccessat(parentFd, "Cargo.toml", F_OK, 0) == 0 ? QStringLiteral("yes") : QString();
    };
    return options;
}

QByteArrayList viaParallel(const QByteArray &root, ParallelTreeWalk::Options options, QByteArrayView skipName = {},
                           int *maxDescriptors = nullptr)
{
    ParallelTreeWalk walk(root, true, std::move(options));
    return events(walk, skipName, maxDescriptors);
}

QByteArray difference(const QByteArrayList &expected, const QByteArrayList &actual)
{
    for (qsizetype i = 0; i < std::max(expected.size(), actual.size()); ++i) {
        const QByteArray a = i < expected.size() ? expected[i] : "(end)";
        const QByteArray b = i < actual.size() ? actual[i] : "(end)";
        if (a != b)
            return "event " + QByteArray::number(i) + ": one thread '" + a + "', in parallel '" + b + "'";
    }
    return {};
}

int openDescriptors() { return int(QDir("/proc/self/fd").count()); }

} // namespace

// Listing folders on other threads must not change one event of the walk.
class TestParallelWalk : public QObject
{
    Q_OBJECT

    // Random trees with every kind of entry, and a chain deeper than the
    // descriptors the reader holds, with a sibling on every level so that
    // folders wait for a descriptor it gave up.
    QTemporaryDir m_tmp;
    QByteArray m_tree;

private slots:
    void initTestCase()
    {
        m_tree = QFile::encodeName(m_tmp.path()) + "/tree";
        Fixtures::randomTree(m_tree, 7, 3000);
        QVERIFY(::mkfifo((m_tree + "/pipe").constData(), 0600) == 0);
        QVERIFY(DeepTree::make(m_tree, 300, 4, 1, [](int fd, int) { ::mkdirat(fd, "side", 0755); }));
    }

    void cleanupTestCase() { DeepTree::remove(m_tree); }

    void sameEventsAsOneThread_data()
    {
        QTest::addColumn<int>("threads");
        QTest::addColumn<int>("readyFolders");
        QTest::addColumn<int>("readyEntries");
        QTest::addColumn<QByteArray>("skipName");
        QTest::newRow("two listers") << 2 << 256 << 4096 << QByteArray();
        QTest::newRow("one lister, one folder ahead") << 1 << 1 << 3 << QByteArray();
        QTest::newRow("three listers, skipping") << 3 << 8 << 64 << QByteArray("src");
    }

    void sameEventsAsOneThread()
    {
        QFETCH(int, threads);
        QFETCH(int, readyFolders);
        QFETCH(int, readyEntries);
        QFETCH(QByteArray, skipName);
        const QByteArray &root = m_tree;
        const int before = openDescriptors();
        for (const QByteArray &start : {root, root + "/a0", root + "/missing", root + "/pipe"}) {
            int most = 0;
            QCOMPARE(difference(viaTreeWalk(start, skipName),
                                viaParallel(start, parallel(threads, readyFolders, readyEntries), skipName, &most)),
                     QByteArray());
            // The reader's innermost folders, the listings waiting and the listers'.
            QVERIFY2(most < before + 128 + readyFolders + threads + 8, QByteArray::number(most).constData());
        }
        QCOMPARE(openDescriptors(), before);
    }

    // A folder mounted inside itself: both walks report it below itself once,
    // as something not to enter.
    void cycleThroughABindMount()
    {
        QTemporaryDir tmp;
        const QByteArray root = QFile::encodeName(tmp.path());
        file(root + "/a/f", 10);
        folder(root + "/a/b/loop");
        if (::mount((root + "/a").constData(), (root + "/a/b/loop").constData(), nullptr, MS_BIND, nullptr) != 0)
            QSKIP("bind mounts need privileges this run lacks");
        const QByteArrayList one = viaTreeWalk(root);
        const QByteArrayList two = viaParallel(root, parallel(2, 256));
        ::umount((root + "/a/b/loop").constData());
        QCOMPARE(difference(one, two), QByteArray());
        struct stat a {};
        QVERIFY(::stat((root + "/a").constData(), &a) == 0);
        QVERIFY(one.contains("other 3 " + root + "/a/b/loop " + QByteArray::number(quint64(a.st_ino)) + " 0"));
    }

    // A walk given up half way leaves no thread and no descriptor behind.
    void abandonedHalfWay()
    {
        const int before = openDescriptors();
        for (int stopAfter : {1, 2, 50, 700, 2000}) {
            ParallelTreeWalk walk(m_tree, true, parallel(2, 16));
            ParallelTreeWalk::Entry e;
            for (int i = 0; i < stopAfter && walk.next(e); ++i) {
            }
        }
        QCOMPARE(openDescriptors(), before);
    }
};

SORVEL_TEST(TestParallelWalk);
#include "tst_parallelwalk.moc"
