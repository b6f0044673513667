#include "FreedesktopTrash.h"

#include "core/Paths.h"
#include "core/Platform.h"
#include "core/Xdg.h"

#include <QDateTime>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t privateDir = 0700;
constexpr qsizetype nameMax = 255;
const QByteArray infoSuffix = QByteArrayLiteral(".trashinfo");

// mkdir -p with mode 0700 for what it creates; 0 or errno.
int makePath(const QByteArray &path)
{
    struct stat st {};
    if (::stat(path.constData(), &st) == 0)
        return S_ISDIR(st.st_mode) ? 0 : ENOTDIR;
    const QByteArray parent = Paths::parentOf(path);
    if (!parent.isEmpty() && parent != path) {
        if (const int e = makePath(parent))
            return e;
    }
    if (::mkdir(path.constData(), privateDir) != 0 && errno != EEXIST)
        return errno;
    return 0;
}

// A trash folder with files/ and info/ inside, made when missing.
int prepareTrash(const QByteArray &trash)
{
    for (const char *sub : {"/files", "/info"}) {
        if (const int e = makePath(trash + sub))
            return e;
    }
    return 0;
}

// The device of `path`, or of its nearest existing ancestor.
dev_t deviceOf(QByteArray path)
{
    struct stat st {};
    while (!path.isEmpty()) {
        if (::stat(path.constData(), &st) == 0)
            return st.st_dev;
        path = Paths::parentOf(path);
    }
    return ::stat("/", &st) == 0 ? st.st_dev : 0;
}

// The top directory of the file system holding `dir` (a directory that exists).
QByteArray topDirectory(const QByteArray &dir, dev_t device)
{
    QByteArray top = dir;
    while (top != "/") {
        const QByteArray parent = Paths::parentOf(top);
        struct stat st {};
        if (parent.isEmpty() || ::lstat(parent.constData(), &st) != 0 || st.st_dev != device)
            break;
        top = parent;
    }
    return top;
}

// The trash to use on another volume, or an errno.
int volumeTrash(const QByteArray &topdir, QByteArray &trash)
{
    const QByteArray uid = QByteArray::number(::getuid());
    const QByteArray shared = Paths::join(topdir, ".Trash");
    struct stat st {};
    if (::lstat(shared.constData(), &st) == 0 && S_ISDIR(st.st_mode) && (st.st_mode & S_ISVTX)) {
        const QByteArray mine = shared + '/' + uid;
        if (::mkdir(mine.constData(), privateDir) == 0 || errno == EEXIST) {
            struct stat own {};
            if (::lstat(mine.constData(), &own) == 0 && S_ISDIR(own.st_mode) && own.st_uid == ::getuid() &&
                prepareTrash(mine) == 0) {
                trash = mine;
                return 0;
            }
        }
    }
    const QByteArray personal = Paths::join(topdir, ".Trash-" + uid);
    if (::mkdir(personal.constData(), privateDir) != 0 && errno != EEXIST)
        return errno;
    struct stat own {};
    if (::lstat(personal.constData(), &own) != 0)
        return errno;
    if (!S_ISDIR(own.st_mode) || own.st_uid != ::getuid())
        return EPERM;
    if (const int e = prepareTrash(personal))
        return e;
    trash = personal;
    return 0;
}

// The base name cut so that "NAME.N.trashinfo" fits in a file name, without
// splitting a UTF-8 sequence.
QByteArray fitName(QByteArray name, qsizetype room)
{
    if (name.size() <= room)
        return name;
    qsizetype cut = room;
    while (cut > 0 && (static_cast<unsigned char>(name[cut]) & 0xC0) == 0x80)
        --cut;
    name.truncate(cut);
    return name;
}

bool writeAll(int fd, const QByteArray &data)
{
    qsizetype done = 0;
    while (done < data.size()) {
        const ssize_t n = ::write(fd, data.constData() + done, size_t(data.size() - done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        done += n;
    }
    return true;
}

} // namespace

FreedesktopTrash::FreedesktopTrash(QByteArray home) : m_homeTrash(Xdg::dataHome(home) + "/Trash") {}

FreedesktopTrash::FreedesktopTrash() : FreedesktopTrash(Platform::homeDirectory()) {}

QByteArray FreedesktopTrash::encodePath(QByteArrayView path) { return path.toByteArray().toPercentEncoding("/"); }

QByteArray FreedesktopTrash::decodePath(QByteArrayView encoded)
{
    return QByteArray::fromPercentEncoding(encoded.toByteArray());
}

FreedesktopTrash::Outcome FreedesktopTrash::moveToTrash(const QByteArray &path) const
{
    Outcome outcome;
    struct stat item {};
    if (::lstat(path.constData(), &item) != 0) {
        outcome.error = errno;
        return outcome;
    }
    const QByteArray dir = Paths::parentOf(path);
    if (dir.isEmpty()) {
        outcome.error = EINVAL; // the root itself
        return outcome;
    }

    // Which trash: the home one when the item lives on its file system.
    QByteArray trash;
    QByteArray pathValue;
    if (item.st_dev == deviceOf(m_homeTrash)) {
        if ((outcome.error = prepareTrash(m_homeTrash)))
            return outcome;
        trash = m_homeTrash;
        pathValue = path;
    } else {
        const QByteArray topdir = topDirectory(dir, item.st_dev);
        if ((outcome.error = volumeTrash(topdir, trash)))
            return outcome;
        pathValue = topdir == "/" ? path.sliced(1) : path.sliced(topdir.size() + 1);
    }

    const QByteArray date = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-ddThh:mm:ss")).toLatin1();
    const QByteArray content = "[Trash Info]\nPath=" + encodePath(pathValue) + "\nDeletionDate=" + date + '\n';
    const QByteArray base = fitName(Paths::lastComponent(path), nameMax - infoSuffix.size() - 8);

    for (int attempt = 1; attempt < 100000; ++attempt) {
        const QByteArray name = attempt == 1 ? base : base + '.' + QByteArray::number(attempt);
        const QByteArray info = trash + "/info/" + name + infoSuffix;
        const QByteArray target = trash + "/files/" + name;
        const int fd = ::open(info.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd < 0) {
            if (errno == EEXIST)
                continue;
            outcome.error = errno;
            return outcome;
        }
        struct stat taken {};
        if (::lstat(target.constData(), &taken) == 0) {
            // A stray entry without its info file: leave it, take the next name.
            ::close(fd);
            ::unlink(info.constData());
            continue;
        }
        if (!writeAll(fd, content)) {
            outcome.error = errno ? errno : EIO;
            ::close(fd);
            ::unlink(info.constData());
            return outcome;
        }
        if (::close(fd) != 0) {
            outcome.error = errno;
            ::unlink(info.constData());
            return outcome;
        }
        if (::rename(path.constData(), target.constData()) != 0) {
            outcome.error = errno;
            ::unlink(info.constData());
            return outcome;
        }
        outcome.trashedAs = target;
        outcome.infoFile = info;
        return outcome;
    }
    outcome.error = EEXIST;
    return outcome;
}
