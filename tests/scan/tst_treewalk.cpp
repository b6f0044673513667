#include "DeepTree.h"
#include "ScanFixtures.h"
#include "TestMain.h"

#include "scan/TreeWalk.h"

#include <QMap>
#include <QTemporaryDir>

#include <fts.h>
#include <sys/stat.h>
#include <unistd.h>

using Fixtures::file;
using Fixtures::folder;

namespace {

// One event as "kind level path", the form both walks are compared in.
using Events = QByteArrayList;

QByteArray event(const char *kind, int level, QByteArrayView path)
{
    return QByteArray(kind) + ' ' + QByteArray::number(level) + ' ' + path.toByteArray();
}

// The reference: fts(3) with the options the scanner's walk stands in for.
Events viaFts(const QByteArray &root, bool followRoot, QByteArrayView skipName)
{
    Events out;
    QByteArray copy = root;
    char *const argv[] = {copy.data(), nullptr};
    FTS *fts = fts_open(argv, FTS_PHYSICAL | FTS_NOCHDIR | (followRoot ? FTS_COMFOLLOW : 0), nullptr);
    QByteArray skipped;
    while (FTSENT *e = fts_read(fts)) {
        const QByteArrayView path(e->fts_path, qsizetype(e->fts_pathlen));
        // glibc reports a skipped folder once more as done; the walk doesn't, and
        // the scanner ignores such an event either way.
        if (!skipped.isNull() && e->fts_info == FTS_DP && path == skipped) {
            skipped = QByteArray();
            continue;
        }
        const char *kind = "other";
        switch (e->fts_info) {
        case FTS_D:
            kind = "directory";
            if (e->fts_level > 0 && QByteArrayView(e->fts_name, qsizetype(e->fts_namelen)) == skipName) {
                fts_set(fts, e, FTS_SKIP);
                skipped = path.toByteArray();
            }
            break;
        case FTS_DP:
            kind = "done";
            break;
        case FTS_DNR:
            kind = "unreadable";
            break;
        case FTS_NS:
            kind = "nostat";
            break;
        case FTS_F:
            kind = "file";
            break;
        case FTS_SL:
        case FTS_SLNONE:
            kind = "symlink";
            break;
        default:
            break;
        }
        out.append(event(kind, int(e->fts_level), path));
    }
    fts_close(fts);
    return out;
}

Events viaTreeWalk(const QByteArray &root, bool followRoot, QByteArrayView skipName)
{
    Events out;
    TreeWalk walk(root, followRoot);
    TreeWalk::Entry e;
    while (walk.next(e)) {
        // In the order of TreeWalk::Kind.
        static const char *const names[] = {"directory", "done", "unreadable", "nostat", "file", "symlink", "other"};
        const char *kind = names[int(e.kind)];
        if (e.kind == TreeWalk::Kind::directory && e.level > 0 && e.name == skipName)
            walk.skip();
        if (e.kind != TreeWalk::Kind::noStat && !e.st)
            kind = "missing-stat";
        out.append(event(kind, e.level, e.path));
    }
    return out;
}

// The first difference between two event lists, or empty text.
QByteArray difference(const Events &expected, const Events &actual)
{
    for (qsizetype i = 0; i < std::max(expected.size(), actual.size()); ++i) {
        const QByteArray a = i < expected.size() ? expected[i] : "(end)";
        const QByteArray b = i < actual.size() ? actual[i] : "(end)";
        if (a != b)
            return "event " + QByteArray::number(i) + ": fts gave '" + a + "', the walk '" + b + "'";
    }
    return {};
}

} // namespace

// The scanner's walk must tell the same story as fts(3) would.
class TestTreeWalk : public QObject
{
    Q_OBJECT

private slots:
    void sameEventsAsFts_data()
    {
        QTest::addColumn<bool>("followRoot");
        QTest::addColumn<QByteArray>("skipName");
        QTest::newRow("follow the root") << true << QByteArray();
        QTest::newRow("physical root") << false << QByteArray();
        QTest::newRow("skipping") << true << QByteArray("skipme");
    }

    void sameEventsAsFts()
    {
        QFETCH(bool, followRoot);
        QFETCH(QByteArray, skipName);
        QTemporaryDir tmp;
        const QByteArray base = QFile::encodeName(tmp.path());
        const QByteArray root = base + "/tree";
        file(root + "/a.txt", 10);
        file(root + "/sub/b.txt", 10);
        file(root + "/sub/skipme/hidden-by-skip", 10);
        file(root + "/odd-\xff/c", 10);
        folder(root + "/empty");
        QVERIFY(::symlink("sub", (root + "/to-sub").constData()) == 0);
        QVERIFY(::symlink("nowhere", (root + "/dangling").constData()) == 0);
        QVERIFY(::mkfifo((root + "/pipe").constData(), 0600) == 0);
        // Deeper than the folders that may hold a descriptor at once.
        QByteArray deep = root + "/deep";
        for (int i = 0; i < 160; ++i) {
            deep += "/d" + QByteArray::number(i);
            file(deep + "/f", 1);
        }
        QVERIFY(::symlink("tree", (base + "/alias").constData()) == 0);

        for (const QByteArray &start : {root, base + "/alias", root + "/a.txt", base + "/missing"}) {
            const Events expected = viaFts(start, followRoot, skipName);
            QVERIFY(expected.size() >= 1);
            QCOMPARE(difference(expected, viaTreeWalk(start, followRoot, skipName)), QByteArray());
        }
        // Removed by hand: QTemporaryDir can't spell the name.
        ::unlink((root + "/odd-\xff/c").constData());
        ::rmdir((root + "/odd-\xff").constData());
    }

    // Folders that can't be listed or searched, seen by an unprivileged user.
    void sameEventsWhenUnreadable()
    {
        QTemporaryDir tmp;
        const QByteArray root = QFile::encodeName(tmp.path());
        ::chmod(root.constData(), 0755);
        file(root + "/ok/x", 10);
        file(root + "/closed/y", 10);
        file(root + "/blind/z", 10);
        file(root + "/listless/w", 10);
        ::chmod((root + "/closed").constData(), 0);
        ::chmod((root + "/blind").constData(), 0444);
        ::chmod((root + "/listless").constData(), 0311);

        const QByteArray outcome = Fixtures::asNobody([root] {
            const QByteArray top = difference(viaFts(root, true, {}), viaTreeWalk(root, true, {}));
            const QByteArray closed =
                difference(viaFts(root + "/closed", true, {}), viaTreeWalk(root + "/closed", true, {}));
            const Events events = viaTreeWalk(root, true, {});
            return top + closed + "|" + QByteArray::number(events.size());
        });
        for (const char *dir : {"/closed", "/blind", "/listless"})
            ::chmod((root + dir).constData(), 0755);
        // root; ok, x, done; closed, unreadable; blind, z (no stat), done; listless, unreadable; done
        QCOMPARE(outcome, QByteArray("|12"));
    }

    // A folder moved away while the walk is far below it: the walk goes on in it
    // (the same folder), and the folders it left, which can't be reached again,
    // end as unreadable when they still had entries to show.
    void folderMovedDuringTheWalk()
    {
        QTemporaryDir tmp, elsewhere;
        const QByteArray root = QFile::encodeName(tmp.path());
        QVERIFY(DeepTree::make(root, 200, 3, 3));
        const QByteArray third =
            root + '/' + DeepTree::name(1, 3) + '/' + DeepTree::name(2, 3) + '/' + DeepTree::name(3, 3);
        const QByteArray moved = QFile::encodeName(elsewhere.path()) + "/moved";
        TreeWalk walk(root, true);
        TreeWalk::Entry e;
        QMap<int, int> shown;  // entries listed per level of their folder
        QMap<int, int> closed; // errno of the closing event per level, -1 for directoryDone
        int filesBelowThird = 0;
        while (walk.next(e)) {
            QVERIFY(e.kind != TreeWalk::Kind::noStat);
            if (e.kind == TreeWalk::Kind::directoryDone || e.kind == TreeWalk::Kind::unreadable) {
                closed[e.level] = e.kind == TreeWalk::Kind::unreadable ? e.error : -1;
                continue;
            }
            ++shown[e.level - 1];
            filesBelowThird += e.kind == TreeWalk::Kind::file && e.level > 3;
            if (e.kind == TreeWalk::Kind::directory && e.level == 180)
                QVERIFY(::rename(third.constData(), moved.constData()) == 0);
        }
        QCOMPARE(filesBelowThird, 198 * 3);
        for (int level = 0; level < 3; ++level) // each with its files and one folder, the root with the folder only
            QCOMPARE(closed.value(level), shown.value(level) < (level ? 4 : 1) ? ENOENT : -1);
        QCOMPARE(closed.value(3), -1);
    }
};

SORVEL_TEST(TestTreeWalk);
#include "tst_treewalk.moc"
