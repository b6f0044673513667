#include "RemovalFixtures.h"
#include "TestMain.h"
#include "Unprivileged.h"

#include "core/Paths.h"
#include "core/RealPlace.h"
#include "removal/FileOperations.h"
#include "removal/FreedesktopTrash.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using RemovalFixtures::bytes;
using RemovalFixtures::exists;

namespace {

bool touch(const QByteArray &path, const QByteArray &content = "data")
{
    const int fd = ::open(path.constData(), O_CREAT | O_WRONLY | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0)
        return false;
    const bool ok = ::write(fd, content.constData(), size_t(content.size())) == content.size();
    ::close(fd);
    return ok;
}

// By bytes: the names under test need not decode.
QByteArray readAll(const QByteArray &path)
{
    QByteArray out;
    const int fd = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return out;
    char buffer[4096];
    ssize_t n;
    while ((n = ::read(fd, buffer, sizeof buffer)) > 0)
        out.append(buffer, n);
    ::close(fd);
    return out;
}

QByteArray pathLine(const QByteArray &info)
{
    for (const QByteArray &line : readAll(info).split('\n'))
        if (line.startsWith("Path="))
            return line.mid(5);
    return {};
}

} // namespace

class TestTrash : public QObject
{
    Q_OBJECT

private slots:
    void createsMissingDataFolderAndWritesNothingElsewhere()
    {
        QTemporaryDir home;
        QTemporaryDir cwd;
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(cwd.path()));
        const QByteArray file = bytes(home) + "/doc.txt";
        QVERIFY(touch(file));
        FreedesktopTrash trash(bytes(home));
        QCOMPARE(trash.homeTrash(), bytes(home) + "/.local/share/Trash");
        const auto outcome = trash.moveToTrash(file);
        QDir::setCurrent(before);
        QCOMPARE(outcome.error, 0);
        QVERIFY(!exists(file));
        QCOMPARE(outcome.trashedAs, bytes(home) + "/.local/share/Trash/files/doc.txt");
        QCOMPARE(readAll(outcome.trashedAs), QByteArray("data"));
        struct stat st {};
        QCOMPARE(::stat(trash.homeTrash().constData(), &st), 0);
        QCOMPARE(st.st_mode & 0777, mode_t(0700));
        QVERIFY(QDir(cwd.path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot));

        const QByteArray info = readAll(outcome.infoFile);
        QVERIFY(info.startsWith("[Trash Info]\nPath=" + FreedesktopTrash::encodePath(file) + "\nDeletionDate="));
        const QByteArray date = info.mid(info.indexOf("DeletionDate=") + 13).trimmed();
        QVERIFY2(QDateTime::fromString(QString::fromLatin1(date), QStringLiteral("yyyy-MM-ddThh:mm:ss")).isValid(),
                 date.constData());
    }

    void oddNamesRoundTripThroughPath_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("invalid UTF-8 and newline") << QByteArray("bad\xff\nname");
        QTest::newRow("percent and reserved characters") << QByteArray("report %41 a&b=c?d#e+f;g");
        QTest::newRow("255 bytes") << QByteArray(255, 'n');
    }

    void oddNamesRoundTripThroughPath()
    {
        QFETCH(QByteArray, name);
        QTemporaryDir home;
        const QByteArray file = bytes(home) + '/' + name;
        QVERIFY(touch(file));
        const auto outcome = FreedesktopTrash(bytes(home)).moveToTrash(file);
        QCOMPARE(outcome.error, 0);
        const QByteArray encoded = pathLine(outcome.infoFile);
        QVERIFY(!encoded.contains(' '));
        QVERIFY(!encoded.contains('\n'));
        QCOMPARE(FreedesktopTrash::decodePath(encoded), file);
        QVERIFY(outcome.infoFile.endsWith(".trashinfo"));
        QVERIFY(Paths::lastComponent(outcome.infoFile).size() <= 255);
    }

    void clashingNamesGetFreshOnes()
    {
        QTemporaryDir home;
        QVERIFY(QDir().mkpath(home.path() + QStringLiteral("/a")));
        QVERIFY(QDir().mkpath(home.path() + QStringLiteral("/b")));
        const QByteArray first = bytes(home) + "/a/same.txt";
        const QByteArray second = bytes(home) + "/b/same.txt";
        QVERIFY(touch(first, "one"));
        QVERIFY(touch(second, "two"));
        FreedesktopTrash trash(bytes(home));
        // A stray file without info must not be overwritten either.
        QVERIFY(QDir().mkpath(QFile::decodeName(trash.homeTrash() + "/files")));
        QVERIFY(touch(trash.homeTrash() + "/files/same.txt.2", "stray"));
        const auto a = trash.moveToTrash(first);
        const auto b = trash.moveToTrash(second);
        QCOMPARE(a.error, 0);
        QCOMPARE(b.error, 0);
        QCOMPARE(a.trashedAs, trash.homeTrash() + "/files/same.txt");
        QCOMPARE(b.trashedAs, trash.homeTrash() + "/files/same.txt.3");
        QCOMPARE(readAll(b.trashedAs), QByteArray("two"));
        QCOMPARE(readAll(trash.homeTrash() + "/files/same.txt.2"), QByteArray("stray"));
        QVERIFY(!exists(trash.homeTrash() + "/info/same.txt.2.trashinfo"));
        QCOMPARE(FreedesktopTrash::decodePath(pathLine(b.infoFile)), second);
    }

    void brokenLinkAndFolder()
    {
        QTemporaryDir home;
        const QByteArray link = bytes(home) + "/dangling";
        QCOMPARE(::symlink("/nonexistent/target", link.constData()), 0);
        const QByteArray folder = bytes(home) + "/folder";
        QVERIFY(QDir().mkpath(QFile::decodeName(folder + "/inner")));
        QVERIFY(touch(folder + "/inner/x"));
        FreedesktopTrash trash(bytes(home));
        QCOMPARE(trash.moveToTrash(link).error, 0);
        QVERIFY(!exists(link));
        QCOMPARE(trash.moveToTrash(folder).error, 0);
        QVERIFY(exists(trash.homeTrash() + "/files/folder/inner/x"));
        QCOMPARE(trash.moveToTrash(bytes(home) + "/never-was").error, ENOENT);
    }

    // Root ignores permissions, so an unprivileged child does the move.
    void unwritableInfoFailsPromptly()
    {
        QTemporaryDir root;
        const QByteArray home = bytes(root) + "/home";
        QVERIFY(QDir().mkpath(QFile::decodeName(home + "/.local/share/Trash/files")));
        QVERIFY(QDir().mkpath(QFile::decodeName(home + "/.local/share/Trash/info")));
        const QByteArray file = home + "/keep.txt";
        QVERIFY(touch(file));
        if (runningAsRoot()) {
            openPathForOthers(home);
            for (const QByteArray &p : {home, home + "/.local", home + "/.local/share", home + "/.local/share/Trash",
                                        home + "/.local/share/Trash/files", home + "/.local/share/Trash/info", file})
                QCOMPARE(::chown(p.constData(), unprivilegedId, unprivilegedId), 0);
        }
        ::chmod((home + "/.local/share/Trash/info").constData(), 0500);
        const ChildOutcome outcome =
            runUnprivileged([&] { return QByteArray::number(FreedesktopTrash(home).moveToTrash(file).error); });
        ::chmod((home + "/.local/share/Trash/info").constData(), 0700);
        QCOMPARE(outcome.status, 0);
        QCOMPARE(outcome.output, QByteArray::number(EACCES));
        QVERIFY(exists(file));
    }

    // /dev/shm is a file system of its own here; without it the case is skipped.
    void otherDeviceUsesItsOwnTrashOrNone()
    {
        struct stat shm {};
        struct stat tmp {};
        if (::stat("/dev/shm", &shm) != 0 || ::stat(QFile::encodeName(QDir::tempPath()).constData(), &tmp) != 0 ||
            shm.st_dev == tmp.st_dev || ::access("/dev/shm", W_OK) != 0)
            QSKIP("no second writable file system at /dev/shm");
        const QByteArray personal = "/dev/shm/.Trash-" + QByteArray::number(::getuid());
        if (exists(personal) || exists("/dev/shm/.Trash"))
            QSKIP("/dev/shm already has a trash; not touching it");

        QTemporaryDir home;
        QTemporaryDir other(QStringLiteral("/dev/shm/sorvel-trash-XXXXXX"));
        QVERIFY(other.isValid());
        const QByteArray file = bytes(other) + "/far away.bin";

        // A blocker where the personal trash would go: the move must fail and
        // leave the file, never copy or delete it.
        QVERIFY(touch(personal, "not a folder"));
        QVERIFY(touch(file));
        const auto refused = FreedesktopTrash(bytes(home)).moveToTrash(file);
        ::unlink(personal.constData());
        QVERIFY(refused.error != 0);
        QVERIFY(exists(file));
        QVERIFY(!exists(bytes(home) + "/.local/share/Trash/files/far away.bin"));

        // With the way clear, the volume's own trash is made and used, with a
        // relative Path=.
        const auto moved = FreedesktopTrash(bytes(home)).moveToTrash(file);
        QCOMPARE(moved.error, 0);
        QVERIFY(moved.trashedAs.startsWith(personal + "/files/"));
        QCOMPARE(FreedesktopTrash::decodePath(pathLine(moved.infoFile)), file.mid(QByteArray("/dev/shm/").size()));
        QVERIFY(!exists(file));
        QVERIFY(QDir(QFile::decodeName(personal)).removeRecursively());
    }

    void permanentRemovalKeepsTheFirstError()
    {
        QTemporaryDir dir;
        const QByteArray tree = bytes(dir) + "/tree";
        QVERIFY(QDir().mkpath(QFile::decodeName(tree + "/a/b")));
        QVERIFY(touch(tree + "/a/b/file"));
        QVERIFY(touch(tree + "/top"));
        auto ops = FileOperations::system();
        QCOMPARE(ops->removePermanently(RealPlace::open(tree)), 0);
        QVERIFY(!exists(tree));
        QCOMPARE(ops->removePermanently(RealPlace::open(tree)), ENOENT);

        // A folder the unprivileged child may not change.
        const QByteArray locked = bytes(dir) + "/locked";
        QVERIFY(QDir().mkpath(QFile::decodeName(locked + "/inner")));
        QVERIFY(touch(locked + "/inner/f"));
        openPathForOthers(locked + "/inner");
        if (!runningAsRoot())
            ::chmod((locked + "/inner").constData(), 0555);
        const ChildOutcome outcome = runUnprivileged(
            [&] { return QByteArray::number(FileOperations::system()->removePermanently(RealPlace::open(locked))); });
        ::chmod((locked + "/inner").constData(), 0755);
        QCOMPARE(outcome.status, 0);
        QCOMPARE(outcome.output, QByteArray::number(EACCES));
        QVERIFY(exists(locked + "/inner/f"));
        QVERIFY(!FileOperations::describe(EACCES).isEmpty());
    }
};

SORVEL_TEST(TestTrash);
#include "tst_trash.moc"
