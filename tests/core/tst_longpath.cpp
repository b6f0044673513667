#include "DeepTree.h"
#include "TestMain.h"
#include "Unprivileged.h"

#include "core/LongPath.h"

#include <QFile>
#include <QTemporaryDir>

#include <cerrno>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QByteArray readAll(int fd)
{
    char buffer[64];
    const ssize_t n = fd < 0 ? -1 : ::read(fd, buffer, sizeof buffer);
    if (fd >= 0)
        ::close(fd);
    return n < 0 ? QByteArray("(failed)") : QByteArray(buffer, n);
}

} // namespace

class TestLongPath : public QObject
{
    Q_OBJECT

private slots:
    // 400 folders of 21 bytes: paths of about 8.4 KB, twice PATH_MAX.
    void deepTree()
    {
        QTemporaryDir tmp;
        DeepChain tree(QFile::encodeName(tmp.path()), 400, 21);
        const QByteArray file = tree.write("file", "deep content");
        const QByteArray link = tree.symlink("link", "file");
        QVERIFY(file.size() > 2 * PATH_MAX);
        QCOMPARE(::open(file.constData(), O_RDONLY), -1); // what the plain call does
        QCOMPARE(errno, ENAMETOOLONG);

        const int fd = LongPath::open(file, O_RDONLY);
        QVERIFY(fd >= 0);
        QVERIFY(::fcntl(fd, F_GETFD) & FD_CLOEXEC);
        QCOMPARE(readAll(fd), QByteArray("deep content"));
        QCOMPARE(readAll(LongPath::open(link, O_RDONLY)), QByteArray("deep content"));

        struct stat st {};
        QVERIFY(LongPath::stat(link, st, true));
        QVERIFY(S_ISREG(st.st_mode));
        QCOMPARE(qint64(st.st_size), 12);
        QVERIFY(LongPath::stat(link, st, false));
        QVERIFY(S_ISLNK(st.st_mode));
        QVERIFY(LongPath::stat(tree.path() + "//", st, true));
        QVERIFY(S_ISDIR(st.st_mode));

        // errno as the plain calls set it.
        const auto fails = [](const QByteArray &path, int error) {
            struct stat info {};
            return LongPath::open(path, O_RDONLY) == -1 && errno == error && !LongPath::stat(path, info, true) &&
                   errno == error;
        };
        QVERIFY(fails(tree.path() + "/missing", ENOENT));
        QVERIFY(fails(tree.level(200) + "/missing/" + file.mid(tree.level(201).size() + 1), ENOENT));
        QVERIFY(fails(file + "/below", ENOTDIR));
        QVERIFY(fails(tree.path() + '/' + QByteArray(PATH_MAX, 'x'), ENAMETOOLONG));
        QVERIFY(fails(QFile::encodeName(tmp.path()) + "/missing", ENOENT)); // short paths too

        // Relative paths start from the working folder.
        QVERIFY(::fchdir(tree.fd(1)) == 0);
        const QByteArray relative = file.mid(tree.level(1).size() + 1);
        QCOMPARE(readAll(LongPath::open(relative, O_RDONLY)), QByteArray("deep content"));
        QVERIFY(::chdir("/") == 0);

        // Passing through a folder needs no right to list it.
        openPathForOthers(tree.level(0));
        ::fchmod(tree.fd(100), 0311);
        const ChildOutcome child = runUnprivileged([&] {
            const int in = LongPath::open(file, O_RDONLY);
            return in < 0 ? QByteArray(std::strerror(errno)) : readAll(in);
        });
        ::fchmod(tree.fd(100), 0755);
        QCOMPARE(child.status, 0);
        QCOMPARE(child.output, QByteArray("deep content"));
    }
};

SORVEL_TEST(TestLongPath);
#include "tst_longpath.moc"
