#include "RemovalFixtures.h"
#include "TestMain.h"
#include "Unprivileged.h"

#include "core/Paths.h"
#include "core/Translations.h"
#include "removal/FreedesktopTrash.h"
#include "removal/Removal.h"
#include "safety/SafetyGuard.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTranslator>

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

using namespace RemovalFixtures;

namespace {

// What the unprivileged child uses: the real permanent removal, and a trash in
// a home of its own (the test's home is not the child's to write).
class ChildOperations : public FileOperations
{
public:
    explicit ChildOperations(const QByteArray &home) : m_trash(home) {}
    int moveToTrash(const RealPlace &place, TrashedItem *) override { return m_trash.moveToTrash(place).error; }
    int removePermanently(const RealPlace &place) override { return m_real->removePermanently(place); }

private:
    FreedesktopTrash m_trash;
    std::shared_ptr<FileOperations> m_real = FileOperations::system();
};

// Outcome as lines: "freed PATH BYTES" and "failed PATH REASON", in order.
QByteArray describe(const Removal::Outcome &outcome)
{
    QByteArrayList lines;
    for (auto it = outcome.freed.cbegin(); it != outcome.freed.cend(); ++it)
        lines << "freed " + it.key();
    std::sort(lines.begin(), lines.end());
    for (const DeletionFailure &failure : outcome.failures)
        lines << "failed " + failure.path + ' ' + failure.reason.rawValue().toLatin1();
    return lines.join('\n');
}

// Runs a removal in the unprivileged child and returns its outcome lines.
QByteArray runAsChild(const QList<DeletionItem> &items, bool permanently, const QByteArray &childHome)
{
    const ChildOutcome outcome = runUnprivileged([&] {
        ChildOperations operations(childHome);
        return describe(Removal::run(items, permanently, operations));
    });
    if (outcome.status != 0)
        return "child exited with " + QByteArray::number(outcome.status);
    return outcome.output;
}

bool chownTo(const QByteArray &path, unsigned id) { return ::chown(path.constData(), id, id) == 0; }

// A temporary folder others may reach, with a home for the unprivileged child.
struct ChildTree {
    QTemporaryDir dir;
    const QByteArray root = bytes(dir);
    const QByteArray childHome = root + "/nobody";
    bool ready()
    {
        openPathForOthers(root);
        return makeDirs(childHome) && chownTo(childHome, unprivilegedId);
    }
};

} // namespace

// The cases that hand files to another owner need root; each gets a tree the
// unprivileged child can reach, and a home for it there.
#define CHILD_TREE()                                                                                                   \
    if (!runningAsRoot())                                                                                              \
        QSKIP("needs root to make files of another owner");                                                            \
    ChildTree tree;                                                                                                    \
    QVERIFY(tree.ready());                                                                                             \
    const QByteArray &root = tree.root, &childHome = tree.childHome

class TestRemoval : public QObject
{
    Q_OBJECT

private slots:
    // On Linux the groups speak of the system, not of macOS or Finder; the
    // source texts stay for macOS.
    void linuxWording()
    {
        QTranslator *translator = Translations::install(Platform::linux);
        QVERIFY(translator);
        for (const auto value : DeletionFailure::Reason::allCases) {
            const DeletionFailure::Reason reason(value);
            for (const QString &text : {reason.title(), reason.explanation()})
                for (const char *word : {"macOS", "Finder", "Full Disk Access"})
                    QVERIFY2(!text.contains(QLatin1String(word)), qPrintable(text));
        }
        QCoreApplication::removeTranslator(translator);
        delete translator;
        QCOMPARE(DeletionFailure::Reason(DeletionFailure::Reason::protectedByMacOS).title(),
                 QStringLiteral("Protected by macOS"));
    }

    // Bytes that really come back: hard links once per walk, a link as itself.
    void measure()
    {
        QTemporaryDir dir;
        const QByteArray root = bytes(dir) + "/m";
        QVERIFY(makeDirs(root + "/sub"));
        QVERIFY(makeFile(root + "/big", 40000));
        QVERIFY(makeFile(root + "/sub/small", 10));
        QCOMPARE(::link((root + "/big").constData(), (root + "/sub/twin").constData()), 0);
        QCOMPARE(::symlink((root + "/big").constData(), (root + "/link").constData()), 0);
        const qint64 big = allocated(root + "/big");
        const qint64 small = allocated(root + "/sub/small");
        QCOMPARE(Removal::measure(root), big + small);
        QCOMPARE(Removal::measure(root + "/sub/twin"), big);
        QCOMPARE(Removal::measure(root + "/link"), allocated(root + "/link"));
        QCOMPARE(Removal::measure(root + "/missing"), 0);
    }

    // An item that is gone already counts as removed, with nothing freed; a
    // failure does not stop the next item.
    void vanishedAndFailedItems_data()
    {
        QTest::addColumn<bool>("permanently");
        QTest::newRow("trash") << false;
        QTest::newRow("permanently") << true;
    }

    void vanishedAndFailedItems()
    {
        QFETCH(bool, permanently);
        QTemporaryDir dir;
        const QByteArray root = bytes(dir);
        QVERIFY(makeFile(root + "/busy", 10));
        QVERIFY(makeFile(root + "/fine", 5000));
        const qint64 fine = allocated(root + "/fine");
        RecordingOperations operations;
        operations.refuse = [&](const QByteArray &path) { return path.endsWith("/busy") ? ETXTBSY : 0; };
        const Removal::Outcome outcome = Removal::run(
            {{root + "/gone", std::nullopt, false}, {root + "/busy", 10, false}, {root + "/fine", std::nullopt, false}},
            permanently, operations);
        QCOMPARE(describe(outcome), "freed " + root + "/fine\nfreed " + root + "/gone\nfailed " + root + "/busy inUse");
        QCOMPARE(outcome.freed.value(root + "/gone"), 0);
        QCOMPARE(outcome.freed.value(root + "/fine"), fine);
        QCOMPARE(outcome.failures.first().detail, FileOperations::describe(ETXTBSY));
        QVERIFY(exists(root + "/busy"));
        QVERIFY(!exists(root + "/fine"));
    }

    // A folder that refuses to go whole is cleared inside only when the item
    // says so, and only if it is a real folder: a link to one is never followed.
    void clearInsideOnFailure_data()
    {
        QTest::addColumn<bool>("clearInside");
        QTest::addColumn<bool>("throughLink");
        QTest::newRow("deep clean") << true << false;
        QTest::newRow("space") << false << false;
        QTest::newRow("link to a folder") << true << true;
    }

    void clearInsideOnFailure()
    {
        QFETCH(bool, clearInside);
        QFETCH(bool, throughLink);
        QTemporaryDir dir;
        const QByteArray folder = bytes(dir) + "/cache";
        QVERIFY(makeDirs(folder + "/inner"));
        QVERIFY(makeFile(folder + "/a", 5000));
        QVERIFY(makeFile(folder + "/inner/b", 9000));
        QVERIFY(makeFile(folder + "/inner/held", 10));
        QByteArray item = folder;
        if (throughLink) {
            item = bytes(dir) + "/link";
            QCOMPARE(::symlink(folder.constData(), item.constData()), 0);
        }
        RecordingOperations operations;
        // The item, a held file inside and so the folder holding that refuse.
        operations.refuse = [&](const QByteArray &path) {
            return path == item || path.endsWith("/inner") || path.endsWith("/held") ? EPERM : 0;
        };
        const Removal::Outcome outcome = Removal::run({{item, 123, clearInside}}, true, operations);
        if (!clearInside || throughLink) {
            QCOMPARE(describe(outcome), "failed " + item + " protectedByMacOS");
            QCOMPARE(operations.calls(), QByteArrayList{item});
            QVERIFY(exists(folder + "/a") && exists(folder + "/inner/b"));
            return;
        }
        QCOMPARE(describe(outcome), "freed " + folder + "/a\nfreed " + folder + "/inner/b\nfailed " + folder +
                                        "/inner/held protectedByMacOS");
        QVERIFY(!exists(folder + "/a") && !exists(folder + "/inner/b"));
        QVERIFY(exists(folder + "/inner/held"));
    }

    // Clearing a folder inside meets the guard for each child: a home folder
    // within (in a profile whose home lies there) is never touched.
    void clearingInsideMeetsTheGuard()
    {
        QTemporaryDir dir;
        const QByteArray root = bytes(dir) + "/outer";
        const QByteArray home = root + "/someone";
        QVERIFY(makeDirs(home + "/Documents"));
        QVERIFY(makeFile(home + "/Documents/canary", 10));
        QVERIFY(makeFile(root + "/loose", 10));
        const SafetyProfile profile(Platform::linux, home);
        RecordingOperations operations;
        operations.refuse = [&](const QByteArray &path) { return path == root ? EBUSY : 0; };
        const Removal::Outcome outcome = Removal::run({{root, std::nullopt, true}}, true, operations, profile);
        QCOMPARE(operations.calls(), QByteArrayList({root, root + "/loose"}));
        QCOMPARE(outcome.failures.size(), 1);
        QCOMPARE(outcome.failures.first().path, home);
        QCOMPARE(outcome.failures.first().reason, DeletionFailure::Reason::safetyGuard);
        QCOMPARE(outcome.failures.first().detail, SafetyGuard::reason(home, profile));
        QVERIFY(exists(home + "/Documents/canary"));
    }

    // Real failure classes: the unprivileged child meets a sticky folder and a
    // folder it may not write.
    void realFailureClasses()
    {
        CHILD_TREE();

        // Someone else's file in a sticky, world-writable folder: EPERM.
        const QByteArray sticky = root + "/sticky";
        QVERIFY(makeDirs(sticky));
        QCOMPARE(::chmod(sticky.constData(), 01777), 0);
        QVERIFY(makeFile(sticky + "/theirs", 10));
        // A folder the child may read but not write: EACCES.
        const QByteArray closed = root + "/closed";
        QVERIFY(makeDirs(closed));
        QCOMPARE(::chmod(closed.constData(), 0755), 0);
        QVERIFY(makeFile(closed + "/file", 10));

        for (bool permanently : {false, true}) {
            const QByteArray lines = runAsChild(
                {{sticky + "/theirs", 10, false}, {closed + "/file", 10, false}, {root + "/vanished", 7, false}},
                permanently, childHome);
            QCOMPARE(lines, "freed " + root + "/vanished\nfailed " + sticky + "/theirs protectedByMacOS\nfailed " +
                                closed + "/file noPermission");
        }
        QVERIFY(exists(sticky + "/theirs"));
        QVERIFY(exists(closed + "/file"));
    }

    // From Deep Clean a folder that will not go is cleared inside and its locked
    // child reported; from Space it fails whole and nothing inside is touched.
    void lockedChildForReal_data()
    {
        QTest::addColumn<bool>("fromDeepClean");
        QTest::newRow("deep clean") << true;
        QTest::newRow("space") << false;
    }

    void lockedChildForReal()
    {
        QFETCH(bool, fromDeepClean);
        CHILD_TREE();
        // The folder's parent is not the child's to change, so the folder cannot
        // move; inside, the folder is sticky and one file belongs to root.
        const QByteArray parent = root + "/parent";
        const QByteArray folder = parent + "/cache";
        QVERIFY(makeDirs(folder));
        QCOMPARE(::chmod(parent.constData(), 0755), 0);
        QCOMPARE(::chmod(folder.constData(), 01777), 0);
        QVERIFY(makeFile(folder + "/a", 10));
        QVERIFY(makeFile(folder + "/b", 10));
        QVERIFY(makeFile(folder + "/locked", 10));
        QVERIFY(chownTo(folder + "/a", unprivilegedId));
        QVERIFY(chownTo(folder + "/b", unprivilegedId));

        const QByteArray lines = runAsChild({{folder, 30, fromDeepClean}}, false, childHome);
        if (fromDeepClean) {
            QCOMPARE(lines,
                     "freed " + folder + "/a\nfreed " + folder + "/b\nfailed " + folder + "/locked protectedByMacOS");
            QVERIFY(!exists(folder + "/a"));
            QVERIFY(exists(childHome + "/.local/share/Trash/files/a"));
        } else {
            QCOMPARE(lines, "failed " + folder + " noPermission");
            QVERIFY(exists(folder + "/a") && exists(folder + "/b"));
        }
        QVERIFY(exists(folder + "/locked"));
    }

    // Five levels of folders below the item are tried; the folder at depth five
    // that will not go is the failure, with the error of its own removal.
    void nestedTooDeep()
    {
        CHILD_TREE();
        const QByteArray item = root + "/item";
        QByteArray deep = item;
        for (int level = 1; level <= 5; ++level)
            deep += "/d" + QByteArray::number(level);
        // Below d5 a folder the child may not empty.
        QVERIFY(makeDirs(deep + "/locked"));
        QVERIFY(makeFile(deep + "/locked/file", 10));
        for (QByteArray p = deep; p != root; p = Paths::parentOf(p))
            QVERIFY(chownTo(p, unprivilegedId));

        const QByteArray lines = runAsChild({{item, std::nullopt, true}}, true, childHome);
        QCOMPARE(lines, "failed " + deep + " noPermission");
        QVERIFY(exists(deep + "/locked/file"));
    }
};

SORVEL_TEST(TestRemoval);
#include "tst_removal.moc"
