#include "DeepTree.h"
#include "RemovalFixtures.h"
#include "TestMain.h"
#include "Unprivileged.h"

#include "core/RealPlace.h"
#include "removal/FreedesktopTrash.h"
#include "removal/Removal.h"
#include "safety/SafetyGuard.h"

#include <sys/mount.h>

using namespace RemovalFixtures;

// Trees built to lead a removal astray: links in the folders of a path, a
// trailing slash on a link, other volumes mounted inside, a folder swapped
// after the review, trees deeper than PATH_MAX. Each checks that nothing
// outside the selection changes (canary trees, digested before and after).
namespace {

bool link(const QByteArray &target, const QByteArray &at) { return ::symlink(target.constData(), at.constData()) == 0; }

QByteArray lines(const Removal::Outcome &outcome)
{
    QByteArrayList out;
    for (auto it = outcome.freed.cbegin(); it != outcome.freed.cend(); ++it)
        out << "freed " + it.key();
    std::sort(out.begin(), out.end());
    for (const DeletionFailure &failure : outcome.failures)
        out << "failed " + failure.path + ' ' + failure.reason.rawValue().toUtf8() + ": " + failure.detail.toUtf8();
    return out.join('\n');
}

// Refuses every call: for cases that must never reach a file operation and
// whose targets are the system's own files.
class RefusingOperations : public FileOperations
{
public:
    int moveToTrash(const RealPlace &place, TrashedItem *) override { return note(place); }
    int removePermanently(const RealPlace &place) override { return note(place); }
    QByteArrayList calls;

private:
    int note(const RealPlace &place)
    {
        calls.append(place.path());
        return EPERM;
    }
};

} // namespace

class TestHostile : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    QByteArray m_root;
    QByteArray m_home;

    SafetyProfile profile() const { return SafetyProfile(Platform::linux, m_home); }

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        m_root = bytes(*m_dir);
        m_home = m_root + "/home";
        QVERIFY(makeDirs(m_home + "/proj"));
    }

    // A link in the folders of a path leads to the user's keys: the guard
    // judges where it leads, and the keys stay.
    void linkToProtectedFolder_data()
    {
        QTest::addColumn<bool>("permanently");
        QTest::newRow("trash") << false;
        QTest::newRow("permanently") << true;
    }
    void linkToProtectedFolder()
    {
        QFETCH(bool, permanently);
        QVERIFY(plantCanary(m_home + "/.ssh"));
        QVERIFY(link("../.ssh", m_home + "/proj/keys"));
        const QByteArray before = digest(m_home + "/.ssh");
        const SafetyProfile linux = profile();
        RecordingOperations operations;
        const Removal::Outcome outcome = Removal::run(
            {{m_home + "/proj/keys/keep.txt", std::nullopt, false}, {m_home + "/proj/keys/sub", std::nullopt, true}},
            permanently, operations, linux);
        QVERIFY2(operations.calls().isEmpty(), operations.calls().join(' ').constData());
        QCOMPARE(outcome.failures.size(), 2);
        for (const DeletionFailure &failure : outcome.failures) {
            QCOMPARE(failure.reason, DeletionFailure::Reason::safetyGuard);
            QCOMPARE(failure.detail, SafetyGuard::reason(m_home + "/.ssh", linux));
        }
        QCOMPARE(digest(m_home + "/.ssh"), before);
        QCOMPARE(SafetyGuard::lastWord(m_home + "/proj/keys/keep.txt", linux).refusedBy,
                 SafetyGuard::Verdict::Form::realPlace);
        // The link itself is the user's to remove.
        QVERIFY(!SafetyGuard::lastWord(m_home + "/proj/keys", linux).refused());
    }

    // System places reached through links never reach a file operation.
    void linkToSystemPlaces()
    {
        QVERIFY(link("/", m_root + "/slash"));
        QVERIFY(link("/etc", m_home + "/etc-link"));
        RefusingOperations operations;
        const QList<DeletionItem> items = {
            {m_root + "/slash/usr/bin/ls", std::nullopt, false}, {m_root + "/slash/etc", std::nullopt, false},
            {m_root + "/slash/usr/bin", std::nullopt, true},     {m_home + "/etc-link/../usr/bin/ls", 1, false},
            {m_root + "/slash/home", std::nullopt, true},
        };
        const Removal::Outcome outcome = Removal::run(items, true, operations, profile());
        QVERIFY2(operations.calls.isEmpty(), operations.calls.join(' ').constData());
        QCOMPARE(outcome.failures.size(), items.size());
        for (const DeletionFailure &failure : outcome.failures)
            QVERIFY2(failure.reason == DeletionFailure::Reason::safetyGuard, lines(outcome).constData());
        QVERIFY(outcome.freed.isEmpty());
    }

    // A home reached through a link keeps its rules at its real place.
    void homeThroughALink()
    {
        QVERIFY(makeDirs(m_root + "/real-home/proj"));
        QVERIFY(plantCanary(m_root + "/real-home/.ssh"));
        QVERIFY(link("real-home", m_root + "/linked-home"));
        QVERIFY(link("../.ssh", m_root + "/real-home/proj/keys"));
        const SafetyProfile linked(Platform::linux, m_root + "/linked-home");
        const SafetyGuard::Verdict verdict = SafetyGuard::lastWord(m_root + "/linked-home/proj/keys/keep.txt", linked);
        QCOMPARE(verdict.refusedBy, SafetyGuard::Verdict::Form::realPlace);
        QCOMPARE(verdict.realPlace, m_root + "/real-home/.ssh/keep.txt");
        QVERIFY(SafetyGuard::lastWord(m_root + "/real-home/Documents", linked).refused());
        QVERIFY(!SafetyGuard::lastWord(m_root + "/real-home/proj/x", linked).refused());
    }

    // "link/" names the link: it goes, and what it points to stays.
    void trailingSlashNamesTheLink_data()
    {
        QTest::addColumn<bool>("permanently");
        QTest::newRow("trash") << false;
        QTest::newRow("permanently") << true;
    }
    void trailingSlashNamesTheLink()
    {
        QFETCH(bool, permanently);
        QVERIFY(plantCanary(m_root + "/target"));
        QVERIFY(link("target", m_root + "/link"));
        const QByteArray before = digest(m_root + "/target");
        auto operations = FileOperations::system();
        const Removal::Outcome outcome =
            Removal::run({{m_root + "/link/", std::nullopt, true}}, permanently, *operations, profile());
        QCOMPARE(lines(outcome), "freed " + m_root + "/link/");
        QVERIFY(!exists(m_root + "/link"));
        QCOMPARE(digest(m_root + "/target"), before);
    }

    // A folder whose path changed after the review (its folder moved away and a
    // link put in its place) is left alone; so is the place the link leads to.
    void folderSwappedAfterReview()
    {
        QVERIFY(makeDirs(m_root + "/a") && makeFile(m_root + "/a/file"));
        QVERIFY(plantCanary(m_root + "/canary"));
        QVERIFY(makeFile(m_root + "/canary/file"));
        const QList<DeletionItem> items = {{m_root + "/a/file", std::nullopt, false}};
        Removal::Options options;
        options.profile = profile();
        options.reviewed = Removal::review(items);
        QCOMPARE(options.reviewed.size(), 1);

        QVERIFY(::rename((m_root + "/a").constData(), (m_root + "/a-moved").constData()) == 0);
        QVERIFY(link("canary", m_root + "/a"));
        const QByteArray before = digest(m_root + "/canary");
        auto operations = FileOperations::system();
        const Removal::Outcome outcome = Removal::run(items, true, *operations, options);
        QCOMPARE(outcome.failures.size(), 1);
        QCOMPARE(outcome.failures.first().reason, DeletionFailure::Reason::changedSinceReview);
        QCOMPARE(digest(m_root + "/canary"), before);
        QVERIFY(exists(m_root + "/a-moved/file"));
    }

    // An item that is no longer what the user reviewed is not touched, whether
    // it goes to the Trash or for good; one that did not change goes.
    void itemChangedAfterReview_data()
    {
        QTest::addColumn<QByteArray>("change");
        QTest::addColumn<bool>("permanently");
        QTest::addColumn<QString>("detail");
        for (const bool permanently : {false, true}) {
            const char *mode = permanently ? " (for good)" : " (to the Trash)";
            QTest::addRow("modified%s", mode) << QByteArray("modified") << permanently << "It was modified";
            QTest::addRow("grown%s", mode) << QByteArray("grown") << permanently << "It grew from";
            QTest::addRow("other inode%s", mode) << QByteArray("inode") << permanently << "replaced by another item";
            QTest::addRow("link%s", mode) << QByteArray("link") << permanently << "replaced by a link";
            QTest::addRow("folder replaced%s", mode) << QByteArray("folder") << permanently << "replaced by another";
        }
    }

    void itemChangedAfterReview()
    {
        QFETCH(QByteArray, change);
        QFETCH(bool, permanently);
        QFETCH(QString, detail);
        const QByteArray item = m_root + "/item";
        const QByteArray same = m_root + "/same";
        QVERIFY(makeFile(same, 10));
        if (change == "folder")
            QVERIFY(makeDirs(item) && makeFile(item + "/inside", 10));
        else
            QVERIFY(makeFile(item, 10));
        const QList<DeletionItem> items = {{item, std::nullopt, false}, {same, std::nullopt, false}};
        Removal::Options options;
        options.profile = profile();
        options.reviewed = Removal::review(items);

        if (change == "modified") {
            // Same size, new content and a new time.
            QFile file(QFile::decodeName(item));
            QVERIFY(file.open(QIODevice::ReadWrite));
            file.write("yyyyyyyyyy");
            file.close();
            struct timespec times[2] = {{0, UTIME_OMIT}, {1000000000, 0}};
            QCOMPARE(::utimensat(AT_FDCWD, item.constData(), times, 0), 0);
        } else if (change == "grown") {
            QVERIFY(makeFile(item, 9000));
        } else if (change == "inode") {
            QVERIFY(makeFile(item + ".new", 10));
            QCOMPARE(::rename((item + ".new").constData(), item.constData()), 0);
        } else if (change == "link") {
            QVERIFY(plantCanary(m_root + "/canary"));
            QCOMPARE(::unlink(item.constData()), 0);
            QVERIFY(link("canary", item));
        } else if (change == "folder") {
            QCOMPARE(::rename(item.constData(), (m_root + "/moved").constData()), 0);
            QVERIFY(makeDirs(item) && makeFile(item + "/inside", 10));
        }
        const QByteArray before = digest(m_root);

        RecordingOperations operations;
        const Removal::Outcome outcome = Removal::run(items, permanently, operations, options);
        QCOMPARE(outcome.failures.size(), 1);
        const DeletionFailure failure = outcome.failures.first();
        QCOMPARE(failure.path, item);
        QCOMPARE(failure.reason, DeletionFailure::Reason::changedSinceReview);
        QVERIFY2(failure.detail.contains(detail), qPrintable(failure.detail));
        QCOMPARE(operations.calls(), QByteArrayList{same});
        QVERIFY(!exists(same));
        QVERIFY(!outcome.freed.contains(item));
        QVERIFY(outcome.freed.contains(same));
        // Nothing else below the root changed: only `same` went.
        QVERIFY(makeFile(same, 10));
        QCOMPARE(digest(m_root), before);
    }

    // Trees deeper than PATH_MAX go whole, through descriptors; a link at the
    // bottom is removed, not followed.
    void deeperThanPathMax()
    {
        QVERIFY(makeDirs(m_root + "/deep"));
        QVERIFY(plantCanary(m_root + "/canary"));
        const QByteArray before = digest(m_root + "/canary");
        const QByteArray canary = m_root + "/canary";
        QVERIFY(DeepTree::make(m_root + "/deep", 1200, 21, 1, [&canary](int fd, int level) {
            if (level == 1200)
                QCOMPARE(::symlinkat(canary.constData(), fd, "out"), 0);
        })); // about 26 KB of path
        auto operations = FileOperations::system();
        const Removal::Outcome outcome =
            Removal::run({{m_root + "/deep", std::nullopt, false}}, true, *operations, profile());
        QCOMPARE(lines(outcome), "freed " + m_root + "/deep");
        QVERIFY(!exists(m_root + "/deep"));
        QCOMPARE(digest(m_root + "/canary"), before);
    }

    // Another volume mounted inside a folder: the folder's own files go, the
    // volume's stay, and the folder is reported. A mount point itself goes
    // nowhere, and a failed move to the Trash makes no trash folder.
    void otherVolumesInside()
    {
        const QByteArray root = m_root;
        const ChildOutcome child = runWithOwnMounts([root] {
            QByteArrayList out;
            const QByteArray folder = root + "/folder", bound = root + "/folder2";
            if (!makeDirs(folder + "/inner") || !makeFile(folder + "/own") || !makeDirs(bound + "/inner") ||
                !makeFile(bound + "/own") || !plantCanary(root + "/kept"))
                return QByteArray("setup failed");
            if (::mount("none", (folder + "/inner").constData(), "tmpfs", 0, nullptr) != 0 ||
                ::mount((root + "/kept").constData(), (bound + "/inner").constData(), nullptr, MS_BIND, nullptr) != 0)
                return QByteArray("mount failed");
            if (!plantCanary(folder + "/inner/c"))
                return QByteArray("canary failed");
            const QByteArray tmpfsBefore = digest(folder + "/inner"), boundBefore = digest(root + "/kept");
            const SafetyProfile linux(Platform::linux, root + "/home");
            auto operations = FileOperations::system();
            const Removal::Outcome outcome = Removal::run(
                {{folder, std::nullopt, false}, {bound, std::nullopt, false}, {bound + "/inner", std::nullopt, true}},
                true, *operations, linux);
            out << lines(outcome);
            out << "own " + QByteArray(exists(folder + "/own") ? "kept" : "gone");
            out << "tmpfs " + QByteArray(digest(folder + "/inner") == tmpfsBefore ? "same" : "changed");
            out << "bind " + QByteArray(digest(root + "/kept") == boundBefore ? "same" : "changed");
            const FreedesktopTrash trash(root + "/home");
            out << "trash mount point " + QByteArray::number(trash.moveToTrash(folder + "/inner").error);
            out << "trash folder " + QByteArray(exists(trash.homeTrash()) ? "made" : "none");
            ::umount((folder + "/inner").constData());
            ::umount((bound + "/inner").constData());
            return out.join('\n');
        });
        if (child.status == noMounts)
            QSKIP("this system lets the test mount neither as root nor in a user namespace");
        QCOMPARE(child.status, 0);
        const QByteArray expected = "failed " + m_root + "/folder other: Another volume is mounted inside it; " +
                                    "nothing on that volume was touched\n" + "failed " + m_root +
                                    "/folder2 other: Another volume is mounted inside it; nothing on that volume was " +
                                    "touched\n" + "failed " + m_root +
                                    "/folder2/inner inUse: " + FileOperations::describe(EBUSY).toUtf8() +
                                    "\nown gone\ntmpfs same\nbind same\n" + "trash mount point " +
                                    QByteArray::number(EBUSY) + "\ntrash folder none";
        QCOMPARE(child.output, expected);
    }

    // The Trash of an item on another volume reached through a link is that
    // volume's, at its top, not a folder inside the link's target.
    void trashThroughALinkedFolder()
    {
        const QByteArray root = m_root;
        const ChildOutcome child = runWithOwnMounts([root] {
            const QByteArray volume = root + "/vol";
            if (!makeDirs(volume) || ::mount("none", volume.constData(), "tmpfs", 0, nullptr) != 0)
                return QByteArray("mount failed");
            if (!makeDirs(volume + "/sub") || !makeFile(volume + "/sub/file") || !link("vol/sub", root + "/link"))
                return QByteArray("setup failed");
            const FreedesktopTrash::Outcome outcome = FreedesktopTrash(root + "/home").moveToTrash(root + "/link/file");
            const QByteArray uid = QByteArray::number(::getuid());
            QByteArray info;
            QFile file(QFile::decodeName(outcome.infoFile));
            if (file.open(QIODevice::ReadOnly))
                info = file.readAll();
            const QByteArray out = QByteArray::number(outcome.error) + ' ' +
                                   outcome.trashedAs.mid(volume.size()).replace("-" + uid, "-UID") + ' ' +
                                   QByteArray(info.contains("\nPath=sub/file\n") ? "relative" : "wrong") + ' ' +
                                   QByteArray(exists(volume + "/sub/.Trash-" + uid) ? "stray" : "clean");
            ::umount(volume.constData());
            return out;
        });
        if (child.status == noMounts)
            QSKIP("this system lets the test mount neither as root nor in a user namespace");
        QCOMPARE(child.status, 0);
        QCOMPARE(child.output, QByteArray("0 /.Trash-UID/files/file relative clean"));
    }
};

SORVEL_TEST(TestHostile);
#include "tst_hostile.moc"
