#include "RemovalFixtures.h"
#include "TestMain.h"
#include "Unprivileged.h"

#include "core/Paths.h"
#include "removal/FreedesktopTrash.h"
#include "removal/Removal.h"
#include "removal/RemovalJournal.h"
#include "removal/TrashDirectorySizes.h"

#include <sys/mount.h>

using namespace RemovalFixtures;

namespace {

// Names a removal must carry through the journal and back unchanged.
const QByteArray oddFile("bad\xff\nname %41.txt");
const QByteArray longName(255, 'L');
const QByteArray oddFolder("folder \xc3\xa9\xfe");

// A folder with a file, a subfolder, a link and an odd name inside, made by
// bytes (QDir cannot make the names under test).
bool plantTree(const QByteArray &path)
{
    return ::mkdir(path.constData(), 0755) == 0 && ::mkdir((path + "/sub").constData(), 0700) == 0 &&
           makeFile(path + "/sub/deep.bin", 5000) && makeFile(path + '/' + oddFile, 100) &&
           ::symlink("sub", (path + "/link").constData()) == 0;
}

QByteArray trashOf(const TrashedItem &item) { return Paths::parentOf(Paths::parentOf(item.trashedAs)); }

// Moves `paths` to the Trash the way a removal does, noting each in `journal`.
Removal::Outcome trash(const RemovalJournal &journal, const QByteArrayList &paths)
{
    QList<DeletionItem> items;
    for (const QByteArray &path : paths)
        items.append({path, std::nullopt, false});
    RemovalJournal::Writer writer = journal.begin();
    Removal::Options options;
    options.reviewed = Removal::review(items);
    options.trashed = [&writer](const TrashedItem &item) { writer.add(item); };
    return Removal::run(items, false, *FileOperations::system(), options);
}

bool hasLine(const QByteArray &trash, const QByteArray &name)
{
    const auto lines = TrashDirectorySizes::read(trash);
    return std::any_of(lines.cbegin(), lines.cend(), [&](const auto &line) { return line.name == name; });
}

} // namespace

class TestJournal : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    QByteArray m_root;

    RemovalJournal journal() const { return RemovalJournal(m_root + "/state/removals"); }

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_root = bytes(*m_dir);
    }
    // Names QTemporaryDir cannot remove.
    void cleanup() { FileOperations::system()->removePermanently(RealPlace::open(m_root)); }

    void directorySizesNamesRoundTrip()
    {
        QByteArray every;
        for (int c = 1; c < 256; ++c)
            if (c != '/')
                every.append(char(c));
        const QList<TrashDirectorySizes::Line> lines = {{4096, 1700000000, oddFile}, {0, 1, every}, {7, 2, "a b%"}};
        const QByteArray text = TrashDirectorySizes::format(lines);
        QCOMPARE(text.count('\n'), 3);
        QCOMPARE(text.count(' '), 6);
        QCOMPARE(TrashDirectorySizes::parse(text), lines);
        // Lines another program got wrong are passed over, not misread.
        QCOMPARE(TrashDirectorySizes::parse("12 34\nx 1 a\n5 6 ok\n1 2 a b\n1 2 %2F\n").size(), 1);
    }

    // A folder moved to the Trash gets its line; a file none. A line of
    // another program stays while its item is there.
    void trashedFolderGetsItsLine()
    {
        const QByteArray home = m_root + "/home";
        const QByteArray folder = m_root + '/' + oddFolder;
        QVERIFY(makeDirs(home) && plantTree(folder) && makeFile(m_root + "/plain", 10));
        const qint64 size = Removal::measure(folder);
        const FreedesktopTrash trash(home);
        QVERIFY(makeDirs(trash.homeTrash() + "/files/theirs"));
        QCOMPARE(TrashDirectorySizes::put(trash.homeTrash(), {5, 6, "theirs"}), 0);
        QCOMPARE(TrashDirectorySizes::put(trash.homeTrash(), {5, 6, "gone-already"}), 0);

        const auto moved = trash.moveToTrash(folder);
        QCOMPARE(moved.error, 0);
        QCOMPARE(trash.moveToTrash(m_root + "/plain").error, 0);
        struct stat info {};
        QCOMPARE(::lstat(moved.infoFile.constData(), &info), 0);
        const QList<TrashDirectorySizes::Line> expected = {{5, 6, "theirs"}, {size, qint64(info.st_mtime), oddFolder}};
        QCOMPARE(TrashDirectorySizes::read(trash.homeTrash()), expected);
        QVERIFY(size > 5000);
    }

    // Files with odd names, a 255-byte name and a folder with contents go to
    // the Trash and come back byte for byte; their info files and their
    // directorysizes line go, and so does the entry.
    void undoPutsBackExactly()
    {
        const QByteArrayList paths = {m_root + '/' + oddFile, m_root + '/' + longName, m_root + '/' + oddFolder};
        QVERIFY(makeFile(paths[0], 3000) && makeFile(paths[1], 10) && plantTree(paths[2]));
        QByteArrayList before;
        for (const QByteArray &path : paths)
            before << digest(path);
        const Removal::Outcome outcome = trash(journal(), paths);
        QCOMPARE(outcome.trashed.size(), 3);
        for (const QByteArray &path : paths)
            QVERIFY(!exists(path));
        QVERIFY(hasLine(trashOf(outcome.trashed[2]), Paths::lastComponent(outcome.trashed[2].trashedAs)));

        const auto entry = journal().lastUndoable();
        QVERIFY(entry);
        QCOMPARE(entry->items, outcome.trashed);
        QVERIFY(qAbs(entry->date.secsTo(QDateTime::currentDateTimeUtc())) < 60);
        const RemovalJournal::UndoOutcome undone = journal().undo(*entry);
        QCOMPARE(undone.restored, outcome.trashed);
        QVERIFY(undone.stayed.isEmpty());
        for (qsizetype i = 0; i < paths.size(); ++i)
            QCOMPARE(digest(paths[i]), before[i]);
        for (const TrashedItem &item : outcome.trashed) {
            QVERIFY(!exists(item.infoFile));
            QVERIFY(!exists(item.trashedAs));
        }
        QVERIFY(!hasLine(trashOf(outcome.trashed[2]), Paths::lastComponent(outcome.trashed[2].trashedAs)));
        QVERIFY(journal().entries().isEmpty());
        QVERIFY(!journal().lastUndoable());
    }

    // Nothing is ever replaced or reached through a link: each item that
    // cannot go back stays in the Trash with its reason, and the entry keeps
    // those still there, to be put back later.
    void undoLeavesWhatCannotGoBack()
    {
        const QByteArray taken = m_root + "/taken", lost = m_root + "/lost/file", linked = m_root + "/linked/file",
                         emptied = m_root + "/emptied";
        QVERIFY(makeFile(taken, 10) && makeDirs(m_root + "/lost") && makeFile(lost) && makeDirs(m_root + "/linked") &&
                makeFile(linked) && makeFile(emptied) && makeDirs(m_root + "/elsewhere"));
        const Removal::Outcome outcome = trash(journal(), {taken, lost, linked, emptied});
        QCOMPARE(outcome.trashed.size(), 4);

        QVERIFY(makeFile(taken, 99)); // a new file where the old one was
        QVERIFY(QDir(QFile::decodeName(m_root + "/lost")).removeRecursively());
        QCOMPARE(::rmdir((m_root + "/linked").constData()), 0);
        QCOMPARE(::symlink("elsewhere", (m_root + "/linked").constData()), 0);
        QCOMPARE(::unlink(outcome.trashed[3].trashedAs.constData()), 0);

        const RemovalJournal::UndoOutcome undone = journal().undo(*journal().lastUndoable());
        QVERIFY(undone.restored.isEmpty());
        QStringList reasons;
        for (const RemovalJournal::Stayed &stayed : undone.stayed)
            reasons << stayed.reason;
        QCOMPARE(reasons,
                 QStringList({"Something else is at its old place now", "The folder it came from is gone",
                              "A folder on the way to its old place is now a link", "It is no longer in the Trash"}));
        QCOMPARE(QFileInfo(QFile::decodeName(taken)).size(), 99);
        QVERIFY(!exists(m_root + "/elsewhere/file"));
        for (int i = 0; i < 3; ++i)
            QVERIFY(exists(outcome.trashed[i].trashedAs) && exists(outcome.trashed[i].infoFile));

        // Once the way is clear, what stayed comes back.
        QCOMPARE(::unlink(taken.constData()), 0);
        const auto entry = journal().lastUndoable();
        QCOMPARE(entry->items, outcome.trashed.first(3));
        const RemovalJournal::UndoOutcome again = journal().undo(*entry);
        QCOMPARE(again.restored, outcome.trashed.first(1));
        QCOMPARE(QFileInfo(QFile::decodeName(taken)).size(), 10);
        QCOMPARE(journal().entries().first().items, outcome.trashed.sliced(1, 2));
    }

    // On a second file system the item goes to that volume's trash and comes
    // back from it.
    void otherVolumeRoundTrip()
    {
        const QByteArray root = m_root;
        const RemovalJournal records = journal();
        const ChildOutcome child = runWithOwnMounts([root, records] {
            const QByteArray volume = root + "/vol";
            if (!makeDirs(volume) || ::mount("none", volume.constData(), "tmpfs", 0, nullptr) != 0)
                return QByteArray("mount failed");
            if (!plantTree(volume + "/tree") || !makeFile(volume + "/" + oddFile, 5000))
                return QByteArray("setup failed");
            const QByteArray before = digest(volume + "/tree") + digest(volume + "/" + oddFile);
            const Removal::Outcome outcome = trash(records, {volume + "/tree", volume + "/" + oddFile});
            const QByteArray uid = QByteArray::number(::getuid());
            QByteArrayList out;
            out << "trashed " + QByteArray::number(outcome.trashed.size());
            for (const TrashedItem &item : outcome.trashed)
                out << item.trashedAs.mid(volume.size()).replace("-" + uid + "/", "-UID/");
            out << "line " + QByteArray(hasLine(volume + "/.Trash-" + uid, "tree") ? "yes" : "no");
            const RemovalJournal::UndoOutcome undone = records.undo(*records.lastUndoable());
            out << "restored " + QByteArray::number(undone.restored.size());
            const QByteArray after = digest(volume + "/tree") + digest(volume + "/" + oddFile);
            out << QByteArray(after == before ? "same" : "changed");
            out << "line " + QByteArray(hasLine(volume + "/.Trash-" + uid, "tree") ? "yes" : "no");
            ::umount(volume.constData());
            return out.join('\n');
        });
        if (child.status == noMounts)
            QSKIP("this system lets the test mount neither as root nor in a user namespace");
        QCOMPARE(child.status, 0);
        QCOMPARE(child.output, "trashed 2\n/.Trash-UID/files/tree\n/.Trash-UID/files/" + oddFile +
                                   "\nline yes\nrestored 2\nsame\nline no");
    }

    // A crash leaves a line cut short: the entry reads without it. An entry
    // without items, or a writer that never wrote, leaves nothing.
    void cutShortLinesAreSkipped()
    {
        RemovalJournal::Writer unused = journal().begin();
        QVERIFY(unused.file().isEmpty());
        QVERIFY(!exists(m_root + "/state"));

        RemovalJournal::Writer writer = journal().begin();
        TrashedItem item{m_root + "/a\n\xff",
                         m_root + "/a\n\xff",
                         m_root + "/t/files/a",
                         m_root + "/t/info/a.trashinfo",
                         {~quint64(0), ~quint64(0) - 1, S_IFREG, 3, 4, 5},
                         4096};
        QVERIFY(writer.add(item));
        QVERIFY(writer.add(item));
        QFile file(QFile::decodeName(writer.file()));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.resize(file.size() - 10));
        file.close();
        QVERIFY(makeFile(m_root + "/state/removals/garbage.jsonl", 100));

        const QList<RemovalJournal::Entry> entries = journal().entries();
        QCOMPARE(entries.size(), 1);
        QCOMPARE(entries.first().items, QList<TrashedItem>{item});
        QVERIFY(!RemovalJournal::inTrash(item));
        QVERIFY(!journal().lastUndoable());
        QCOMPARE(journal().prune(), 1);
        QVERIFY(journal().entries().isEmpty());
        struct stat st {};
        QCOMPARE(::stat((m_root + "/state/removals").constData(), &st), 0);
        QCOMPARE(st.st_mode & 0777, mode_t(0700));
    }
};

SORVEL_TEST(TestJournal);
#include "tst_journal.moc"
