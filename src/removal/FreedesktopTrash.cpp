#include "FreedesktopTrash.h"

#include "Removal.h"
#include "TrashDirectorySizes.h"
#include "core/FdIo.h"
#include "core/Paths.h"
#include "core/Platform.h"
#include "core/RealPlace.h"
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

// Folders a move created, removed again when the move does not happen, so a
// failed move leaves no trace.
class Created
{
public:
    ~Created()
    {
        if (m_keep)
            return;
        for (auto it = m_dirs.crbegin(); it != m_dirs.crend(); ++it)
            ::rmdir(it->constData());
    }
    void add(const QByteArray &dir) { m_dirs.append(dir); }
    void keep() { m_keep = true; }

private:
    QByteArrayList m_dirs;
    bool m_keep = false;
};

// mkdir -p with mode 0700 for what it creates; 0 or errno.
int makePath(const QByteArray &path, Created &created)
{
    struct stat st {};
    if (::stat(path.constData(), &st) == 0)
        return S_ISDIR(st.st_mode) ? 0 : ENOTDIR;
    const QByteArray parent = Paths::parentOf(path);
    if (!parent.isEmpty() && parent != path) {
        if (const int e = makePath(parent, created))
            return e;
    }
    if (::mkdir(path.constData(), privateDir) == 0)
        created.add(path);
    else if (errno != EEXIST)
        return errno;
    return 0;
}

// A trash folder with files/ and info/ inside, made when missing.
int prepareTrash(const QByteArray &trash, Created &created)
{
    for (const char *sub : {"/files", "/info"}) {
        if (const int e = makePath(trash + sub, created))
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

// The top directory of the file system holding the item's folder: climbs from
// the open folder through ".." while the device stays the same, so neither a
// link in the path nor its length leads astray.
QByteArray topDirectory(const RealPlace &place)
{
    QByteArray top = place.parent();
    int fd = ::dup(place.parentFd());
    const dev_t device = place.parentStat().st_dev;
    while (fd >= 0 && top != "/") {
        const int up = ::openat(fd, "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        struct stat st {};
        ::close(fd);
        fd = up;
        if (up < 0 || ::fstat(up, &st) != 0 || st.st_dev != device)
            break;
        top = Paths::parentOf(top);
    }
    if (fd >= 0)
        ::close(fd);
    return top;
}

// The trash to use on another volume, or an errno.
int volumeTrash(const QByteArray &topdir, QByteArray &trash, Created &created)
{
    const QByteArray uid = QByteArray::number(::getuid());
    const QByteArray shared = Paths::join(topdir, ".Trash");
    struct stat st {};
    if (::lstat(shared.constData(), &st) == 0 && S_ISDIR(st.st_mode) && (st.st_mode & S_ISVTX)) {
        const QByteArray mine = shared + '/' + uid;
        const bool made = ::mkdir(mine.constData(), privateDir) == 0;
        if (made || errno == EEXIST) {
            struct stat own {};
            if (::lstat(mine.constData(), &own) == 0 && S_ISDIR(own.st_mode) && own.st_uid == ::getuid()) {
                if (made)
                    created.add(mine);
                if (prepareTrash(mine, created) == 0) {
                    trash = mine;
                    return 0;
                }
            }
        }
    }
    const QByteArray personal = Paths::join(topdir, ".Trash-" + uid);
    if (::mkdir(personal.constData(), privateDir) == 0)
        created.add(personal);
    else if (errno != EEXIST)
        return errno;
    struct stat own {};
    if (::lstat(personal.constData(), &own) != 0)
        return errno;
    if (!S_ISDIR(own.st_mode) || own.st_uid != ::getuid())
        return EPERM;
    if (const int e = prepareTrash(personal, created))
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

// The directorysizes line of a folder just moved in as `name`. A cache: when
// it cannot be written, readers walk the folder instead.
void noteFolderSize(const QByteArray &trash, const QByteArray &name, const QByteArray &info,
                    std::optional<qint64> known)
{
    struct stat st {};
    if (::lstat(info.constData(), &st) != 0)
        return;
    const qint64 size = known ? *known : Removal::measure(trash + "/files/" + name);
    TrashDirectorySizes::put(trash, {size, qint64(st.st_mtime), name});
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
    return moveToTrash(RealPlace::open(path));
}

FreedesktopTrash::Outcome FreedesktopTrash::moveToTrash(const RealPlace &place, std::optional<qint64> folderSize) const
{
    Outcome outcome;
    struct stat item {};
    if ((outcome.error = place.statItem(item)))
        return outcome;
    if (place.name().isEmpty()) {
        outcome.error = EINVAL; // the root itself
        return outcome;
    }
    // A mount point cannot be renamed away; find that out before making anything.
    if (place.isMountPoint()) {
        outcome.error = EBUSY;
        return outcome;
    }
    const QByteArray path = place.path();

    // Which trash: the home one when the item lives on its file system.
    Created created;
    QByteArray trash;
    QByteArray pathValue;
    if (item.st_dev == deviceOf(m_homeTrash)) {
        if ((outcome.error = prepareTrash(m_homeTrash, created)))
            return outcome;
        trash = m_homeTrash;
        pathValue = path;
    } else {
        const QByteArray topdir = topDirectory(place);
        if ((outcome.error = volumeTrash(topdir, trash, created)))
            return outcome;
        pathValue = topdir == "/" ? path.sliced(1) : path.sliced(topdir.size() + 1);
    }

    const QByteArray date = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-ddThh:mm:ss")).toLatin1();
    const QByteArray content = "[Trash Info]\nPath=" + encodePath(pathValue) + "\nDeletionDate=" + date + '\n';
    const QByteArray base = fitName(place.name(), nameMax - infoSuffix.size() - 8);

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
        if (!FdIo::writeAll(fd, content)) {
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
        if (::renameat(place.parentFd(), place.name().constData(), AT_FDCWD, target.constData()) != 0) {
            outcome.error = errno;
            ::unlink(info.constData());
            return outcome;
        }
        created.keep();
        if (S_ISDIR(item.st_mode))
            noteFolderSize(trash, name, info, folderSize);
        outcome.trashedAs = target;
        outcome.infoFile = info;
        return outcome;
    }
    outcome.error = EEXIST;
    return outcome;
}
