#include "RemovalFixtures.h"
#include "TestMain.h"
#include "Unprivileged.h"

#include "core/TrashFolders.h"
#include "removal/TrashDrain.h"

#include <sys/mount.h>

using namespace RemovalFixtures;

namespace {

bool link(const QByteArray &target, const QByteArray &at) { return ::symlink(target.constData(), at.constData()) == 0; }

QByteArrayList namesIn(const QByteArray &folder)
{
    QByteArrayList names;
    if (DIR *dir = ::opendir(folder.constData())) {
        while (const dirent *entry = ::readdir(dir))
            if (qstrcmp(entry->d_name, ".") != 0 && qstrcmp(entry->d_name, "..") != 0)
                names.append(entry->d_name);
        ::closedir(dir);
    }
    std::sort(names.begin(), names.end());
    return names;
}

bool isFolder(const QByteArray &path)
{
    struct stat st {};
    return ::lstat(path.constData(), &st) == 0 && S_ISDIR(st.st_mode);
}

// The info file of a trashed item, and the item as a file unless it is there.
bool trashItem(const QByteArray &trash, const QByteArray &name)
{
    return makeFile(trash + "/info/" + name + ".trashinfo", 60) &&
           (exists(trash + "/files/" + name) || makeFile(trash + "/files/" + name, 300));
}

QByteArray text(const TrashDrain::Outcome &outcome)
{
    return "removed " + QByteArray::number(outcome.removed) + " failed " + QByteArray::number(outcome.failed) +
           " first " + QByteArray::number(outcome.firstError);
}

} // namespace

class TestTrashDrain : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    QByteArray m_root;

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        m_root = bytes(*m_dir);
    }

    // A home trash full of what could lead a removal out of it: links to
    // files and folders outside, a link inside a trashed folder, a name that
    // is not UTF-8 and holds a newline. Beside it, a trash that is a link and
    // one whose files/ is a link. Only what lies in files/ and info/ goes.
    void hostileHomeTrash()
    {
        const QByteArray home = m_root + "/ada", outside = m_root + "/outside";
        const QByteArray trash = home + "/.local/share/Trash", files = trash + "/files";
        const QByteArray odd("odd\xff\xfe\nname");
        QVERIFY(makeDirs(files) && makeDirs(trash + "/info"));
        QVERIFY(plantCanary(outside + "/dir") && makeFile(outside + "/file.txt", 700));
        QVERIFY(makeFile(home + "/.local/share/next-to-trash.txt", 50) && makeFile(trash + "/beside.txt", 20));

        QVERIFY(makeFile(files + "/plain.txt", 1000));
        QVERIFY(makeDirs(files + "/tree/a/b") && makeFile(files + "/tree/a/b/c.bin", 9000));
        QVERIFY(link(outside + "/dir", files + "/tree/a/toDir") && link(outside + "/file.txt", files + "/tree/toFile"));
        QVERIFY(link(outside + "/file.txt", files + "/fileLink") && link(outside + "/dir", files + "/dirLink"));
        QVERIFY(::mkdir((files + '/' + odd).constData(), 0700) == 0 && makeFile(files + '/' + odd + "/in" + odd));
        for (const QByteArray &name :
             {QByteArray("plain.txt"), QByteArray("tree"), QByteArray("fileLink"), QByteArray("dirLink"), odd})
            QVERIFY(trashItem(trash, name));
        QVERIFY(makeFile(trash + "/info/gone.trashinfo") && makeFile(trash + "/directorysizes", 80));

        // A trash that is a link to a full one, and one whose files/ leads outside.
        const QByteArray hidden = m_root + "/hidden", linkedFiles = m_root + "/vol/.Trash-1";
        QVERIFY(makeDirs(hidden + "/files") && makeDirs(hidden + "/info") && trashItem(hidden, "kept"));
        QVERIFY(link(hidden, m_root + "/linkTrash"));
        QVERIFY(makeDirs(linkedFiles + "/info") && link(outside + "/dir", linkedFiles + "/files"));
        QVERIFY(makeFile(linkedFiles + "/info/x.trashinfo"));

        const QByteArray outsideBefore = digest(outside), hiddenBefore = digest(hidden);
        const QByteArray nextBefore = digest(home + "/.local/share/next-to-trash.txt");
        const QByteArray besideBefore = digest(trash + "/beside.txt");

        const TrashDrain::Outcome outcome = TrashDrain::empty(
            {trash, m_root + "/linkTrash", linkedFiles, m_root + "/no-such-trash"}, *FileOperations::system());
        // Five items and a stray info file went; each skipped trash is one failure.
        QCOMPARE(text(outcome), "removed 6 failed 2 first " + QByteArray::number(ELOOP));
        QVERIFY(isFolder(files) && isFolder(trash + "/info"));
        QCOMPARE(namesIn(files), QByteArrayList());
        QCOMPARE(namesIn(trash + "/info"), QByteArrayList());
        QCOMPARE(namesIn(trash), QByteArrayList({"beside.txt", "files", "info"}));
        QCOMPARE(digest(outside), outsideBefore);
        QCOMPARE(digest(hidden), hiddenBefore);
        QCOMPARE(digest(home + "/.local/share/next-to-trash.txt"), nextBefore);
        QCOMPARE(digest(trash + "/beside.txt"), besideBefore);
        QCOMPARE(namesIn(linkedFiles + "/info"), QByteArrayList({"x.trashinfo"}));
    }

    // A volume's own trash, found through the mount table and emptied up to
    // the edge of other volumes mounted inside a trashed folder or on one:
    // their files stay, those items and their info files stay, and the
    // failures are told.
    void volumeTrash()
    {
        const QByteArray root = m_root;
        const ChildOutcome child = runWithOwnMounts([root] {
            QByteArrayList out;
            // Spaces, a newline and a backslash come escaped in the mount table.
            const QByteArray top = root + "/vol one\nback\\slash";
            const QByteArray uid = QByteArray::number(::getuid());
            const QByteArray personal = top + "/.Trash-" + uid, shared = top + "/.Trash";
            if (!makeDirs(top) || ::mount("none", top.constData(), "tmpfs", 0, nullptr) != 0)
                return QByteArray("mount failed");
            const QByteArray inner = personal + "/files/big/inner", mnt = personal + "/files/mnt";
            if (!makeDirs(inner) || !makeDirs(mnt) || !makeDirs(personal + "/info") || !trashItem(personal, "big") ||
                !trashItem(personal, "mnt") || !trashItem(personal, "note.txt") ||
                !makeFile(personal + "/files/big/own", 4000) || !makeDirs(shared + '/' + uid + "/files") ||
                !makeDirs(shared + '/' + uid + "/info") || !trashItem(shared + '/' + uid, "a") ||
                !plantCanary(top + "/canary"))
                return QByteArray("setup failed");
            if (::mount("none", inner.constData(), "tmpfs", 0, nullptr) != 0 ||
                ::mount("none", mnt.constData(), "tmpfs", 0, nullptr) != 0 || !plantCanary(inner + "/c") ||
                !plantCanary(mnt + "/c"))
                return QByteArray("inner mounts failed");

            const QByteArray home = root + "/ada";
            const auto shown = [&top, &uid](QByteArrayList paths) {
                for (QByteArray &path : paths)
                    path.replace(top, "TOP")
                        .replace(".Trash-" + uid, ".Trash-UID")
                        .replace(".Trash/" + uid, ".Trash/UID");
                return paths.join(' ');
            };
            out << "listed " + QByteArray(TrashFolders::mountPoints().contains(top) ? "yes" : "no");
            ::chmod(shared.constData(), 0777);
            out << "plain .Trash: " + shown(TrashFolders::ofUser(home, {top}));
            ::chmod(shared.constData(), 01777);
            const QByteArrayList trashes = TrashFolders::ofUser(home, {top});
            out << "sticky .Trash: " + shown(trashes);

            const QByteArray innerBefore = digest(inner), mntBefore = digest(mnt),
                             canaryBefore = digest(top + "/canary");
            const TrashDrain::Outcome outcome = TrashDrain::empty(trashes, *FileOperations::system());
            out << "removed " + QByteArray::number(outcome.removed) + " failed " + QByteArray::number(outcome.failed) +
                       ' ' + (outcome.firstError == EXDEV || outcome.firstError == EBUSY ? "crossing" : "other");
            out << "files " + namesIn(personal + "/files").join(',') + " big " +
                       namesIn(personal + "/files/big").join(',') + " info " + namesIn(personal + "/info").join(',');
            out << "shared " + namesIn(shared + '/' + uid + "/files").join(',') + '|' +
                       namesIn(shared + '/' + uid + "/info").join(',');
            out << "inner " + QByteArray(digest(inner) == innerBefore ? "same" : "changed") + " mnt " +
                       QByteArray(digest(mnt) == mntBefore ? "same" : "changed") + " canary " +
                       QByteArray(digest(top + "/canary") == canaryBefore ? "same" : "changed");

            // A trash whose files/ is another volume's root is not entered at all.
            const QByteArray other = root + "/other/.Trash-" + uid;
            if (!makeDirs(other + "/files") || !makeDirs(other + "/info") ||
                ::mount("none", (other + "/files").constData(), "tmpfs", 0, nullptr) != 0 ||
                !plantCanary(other + "/files/c") || !makeFile(other + "/info/c.trashinfo"))
                return QByteArray("other trash failed");
            const QByteArray otherBefore = digest(other);
            const TrashDrain::Outcome skipped = TrashDrain::empty({other}, *FileOperations::system());
            out << "mounted files/: failed " + QByteArray::number(skipped.failed) + ' ' +
                       QByteArray(skipped.firstError == EXDEV ? "EXDEV" : "other") + ' ' +
                       QByteArray(digest(other) == otherBefore ? "same" : "changed") + ", entered " +
                       QByteArray::number(RealPlace::open(other + "/files").child("c").error());
            for (const QByteArray &mount : {inner, mnt, other + "/files", top})
                ::umount(mount.constData());
            return out.join('\n');
        });
        if (child.status == noMounts)
            QSKIP("this system lets the test mount neither as root nor in a user namespace");
        QCOMPARE(child.status, 0);
        QCOMPARE(child.output, QByteArray("listed yes\n"
                                          "plain .Trash: TOP/.Trash-UID\n"
                                          "sticky .Trash: TOP/.Trash/UID TOP/.Trash-UID\n"
                                          "removed 2 failed 2 crossing\n"
                                          "files big,mnt big inner info big.trashinfo,mnt.trashinfo\n"
                                          "shared |\n"
                                          "inner same mnt same canary same\n"
                                          "mounted files/: failed 1 EXDEV same, entered " +
                                          QByteArray::number(EXDEV)));
    }
};

SORVEL_TEST(TestTrashDrain);
#include "tst_trashdrain.moc"
