#include "TestMain.h"
#include "Unprivileged.h"

#include "core/TrashFolders.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

namespace {

bool makeDirs(const QByteArray &path, mode_t mode = 0700)
{
    return QDir().mkpath(QFile::decodeName(path)) && ::chmod(path.constData(), mode) == 0;
}

bool link(const QByteArray &target, const QByteArray &at) { return ::symlink(target.constData(), at.constData()) == 0; }

} // namespace

class TestTrashFolders : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    QByteArray m_root;
    QByteArray m_uid;

    // The list with the temporary folder and the uid written as ROOT and UID.
    QByteArrayList shown(QByteArrayList paths) const
    {
        for (QByteArray &path : paths)
            path.replace(m_root, "ROOT")
                .replace(".Trash-" + m_uid, ".Trash-UID")
                .replace(".Trash/" + m_uid, ".Trash/UID");
        return paths;
    }

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        m_root = QFile::encodeName(m_dir->path());
        m_uid = QByteArray::number(::getuid());
    }

    // Which folders count as the user's trash, in which order, each once; a
    // link in place of a trash or of the shared .Trash never counts.
    void foldersOfTheUser()
    {
        const QByteArray home = m_root + "/ada", a = m_root + "/a", b = m_root + "/b", c = m_root + "/c";
        QVERIFY(makeDirs(home + "/.local/share/Trash"));
        // a: both kinds of volume trash.
        QVERIFY(makeDirs(a + "/.Trash", 01777) && makeDirs(a + "/.Trash/" + m_uid) && makeDirs(a + "/.Trash-" + m_uid));
        // b: a .Trash without the sticky bit is nobody's to share; a file is no trash.
        QVERIFY(makeDirs(b + "/.Trash", 0777) && makeDirs(b + "/.Trash/" + m_uid));
        QVERIFY(QFile(QFile::decodeName(b + "/.Trash-" + m_uid)).open(QIODevice::WriteOnly));
        // c: links to real, sticky, owned folders.
        QVERIFY(makeDirs(m_root + "/real/" + m_uid) && ::chmod((m_root + "/real").constData(), 01777) == 0);
        QVERIFY(makeDirs(c) && link(m_root + "/real", c + "/.Trash"));
        QVERIFY(link(a + "/.Trash-" + m_uid, c + "/.Trash-" + m_uid));
        // d: the same volume as a, mounted twice (here: a link to it).
        QVERIFY(link(a, m_root + "/d"));

        const QByteArrayList found = TrashFolders::ofUser(home, {m_root + "/gone", a, b, c, m_root + "/d", a});
        QCOMPARE(shown(found),
                 QByteArrayList({"ROOT/ada/.local/share/Trash", "ROOT/a/.Trash/UID", "ROOT/a/.Trash-UID"}));

        // The home trash only when it is there and a real folder.
        QVERIFY(QDir(QFile::decodeName(home + "/.local/share/Trash")).removeRecursively());
        QVERIFY(link(a + "/.Trash-" + m_uid, home + "/.local/share/Trash"));
        QCOMPARE(shown(TrashFolders::ofUser(home, {b})), QByteArrayList());

        // The mount table: "/" is there, kernel interfaces are not.
        const QByteArrayList mounts = TrashFolders::mountPoints();
#if defined(Q_OS_LINUX)
        QVERIFY(mounts.contains("/"));
        QVERIFY(!mounts.contains("/proc") && !mounts.contains("/sys"));
#else
        QVERIFY(mounts.isEmpty());
#endif
    }

    // Folders of another user in the places of the user's trash are not the
    // user's trash, however they look.
    void othersFolders()
    {
        if (!runningAsRoot())
            QSKIP("giving a folder to another user takes root");
        const QByteArray top = m_root + "/top";
        QVERIFY(makeDirs(top + "/.Trash", 01777) && makeDirs(top + "/.Trash/" + m_uid) &&
                makeDirs(top + "/.Trash-" + m_uid));
        QCOMPARE(TrashFolders::ofUser(m_root + "/ada", {top}).size(), 2);
        QCOMPARE(::chown((top + "/.Trash-" + m_uid).constData(), unprivilegedId, unprivilegedId), 0);
        QCOMPARE(::chown((top + "/.Trash/" + m_uid).constData(), unprivilegedId, unprivilegedId), 0);
        QCOMPARE(TrashFolders::ofUser(m_root + "/ada", {top}), QByteArrayList());
    }
};

SORVEL_TEST(TestTrashFolders);
#include "tst_trashfolders.moc"
