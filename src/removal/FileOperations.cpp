#include "FileOperations.h"

#include "FreedesktopTrash.h"
#include "TrashedItem.h"
#include "core/RealPlace.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int listFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
// Folders holding a descriptor at once; deeper trees give up the outer ones and
// reach them again through ".." on the way back, checked by device and inode.
constexpr std::size_t maxHeld = 64;

// One folder being emptied.
struct Frame {
    int fd = -1;
    dev_t dev = 0;
    ino_t ino = 0;
    QByteArray name; // its name in the folder above
    std::vector<QByteArray> names;
    std::size_t next = 0;
};

// Opens `name` inside `dirFd` as a folder without following a link, checks
// that it is the folder `looked` describes, and lists it.
int enter(int dirFd, const QByteArray &name, const struct stat &looked, Frame &frame)
{
    const int fd = ::openat(dirFd, name.constData(), listFlags);
    if (fd < 0)
        return errno;
    struct stat st {};
    if (::fstat(fd, &st) != 0 || st.st_dev != looked.st_dev || st.st_ino != looked.st_ino) {
        ::close(fd);
        return ESTALE;
    }
    const int listFd = ::dup(fd);
    DIR *dir = listFd >= 0 ? ::fdopendir(listFd) : nullptr;
    if (!dir) {
        const int error = errno;
        if (listFd >= 0)
            ::close(listFd);
        ::close(fd);
        return error;
    }
    frame.fd = fd;
    frame.dev = st.st_dev;
    frame.ino = st.st_ino;
    frame.name = name;
    frame.names.clear();
    frame.next = 0;
    errno = 0;
    while (const dirent *entry = ::readdir(dir)) {
        const char *n = entry->d_name;
        if (n[0] == '.' && (n[1] == '\0' || (n[1] == '.' && n[2] == '\0')))
            continue;
        frame.names.emplace_back(n);
    }
    ::closedir(dir);
    return 0;
}

// Removes the folder `place` names and everything in it, without leaving its
// volume and without following a link. Returns the first errno met.
int removeTree(const RealPlace &place, const struct stat &top)
{
    int first = 0;
    auto note = [&first](int e) {
        if (first == 0)
            first = e;
    };
    const quint64 mount = RealPlace::mountOf(place.parentFd(), place.name().constData());
    auto sameVolume = [&](int dirFd, const char *name, const struct stat &st) {
        if (st.st_dev != top.st_dev)
            return false;
        return mount == 0 || RealPlace::mountOf(dirFd, name) == mount;
    };

    std::vector<Frame> stack(1);
    if (const int e = enter(place.parentFd(), place.name(), top, stack.front()))
        return e;
    std::size_t held = 1;

    while (!stack.empty()) {
        Frame &frame = stack.back();
        if (frame.next < frame.names.size()) {
            const QByteArray name = frame.names[frame.next++];
            struct stat st {};
            if (::fstatat(frame.fd, name.constData(), &st, AT_SYMLINK_NOFOLLOW) != 0) {
                if (errno != ENOENT)
                    note(errno);
                continue;
            }
            if (!S_ISDIR(st.st_mode)) {
                if (::unlinkat(frame.fd, name.constData(), 0) != 0 && errno != ENOENT)
                    note(errno);
                continue;
            }
            if (!sameVolume(frame.fd, name.constData(), st)) {
                note(EXDEV); // another volume is mounted here: nothing on it is touched
                continue;
            }
            Frame child;
            if (const int e = enter(frame.fd, name, st, child)) {
                note(e);
                continue;
            }
            if (++held > maxHeld) {
                for (Frame &outer : stack) {
                    if (outer.fd >= 0) {
                        ::close(outer.fd);
                        outer.fd = -1;
                        --held;
                        break;
                    }
                }
            }
            stack.push_back(std::move(child));
            continue;
        }

        // The folder is empty as far as it goes: remove it from the one above.
        Frame done = std::move(stack.back());
        stack.pop_back();
        int parentFd = place.parentFd();
        if (!stack.empty()) {
            Frame &up = stack.back();
            if (up.fd < 0) {
                const int fd = ::openat(done.fd, "..", listFlags);
                struct stat st {};
                if (fd < 0 || ::fstat(fd, &st) != 0 || st.st_dev != up.dev || st.st_ino != up.ino) {
                    // Moved while we worked: stop rather than act anywhere else.
                    if (fd >= 0)
                        ::close(fd);
                    ::close(done.fd);
                    for (Frame &rest : stack)
                        if (rest.fd >= 0)
                            ::close(rest.fd);
                    note(ESTALE);
                    return first;
                }
                up.fd = fd;
                ++held;
            }
            parentFd = up.fd;
        }
        ::close(done.fd);
        --held;
        if (::unlinkat(parentFd, done.name.constData(), AT_REMOVEDIR) != 0 && errno != ENOENT)
            note(errno);
    }
    return first;
}

class SystemFileOperations final : public FileOperations
{
public:
    int moveToTrash(const RealPlace &place, TrashedItem *trashed) override
    {
#if defined(Q_OS_MACOS)
        if (!place.isValid())
            return place.error();
        QFile file(QFile::decodeName(place.path()));
        if (file.moveToTrash()) {
            if (trashed)
                trashed->trashedAs = QFile::encodeName(file.fileName());
            return 0;
        }
        struct stat st {};
        return place.statItem(st) == 0 ? EPERM : ENOENT;
#else
        const FreedesktopTrash::Outcome outcome =
            m_trash.moveToTrash(place, trashed && trashed->size > 0 ? std::optional(trashed->size) : std::nullopt);
        if (outcome.ok() && trashed) {
            trashed->trashedAs = outcome.trashedAs;
            trashed->infoFile = outcome.infoFile;
        }
        return outcome.error;
#endif
    }

    int removePermanently(const RealPlace &place) override
    {
        if (!place.isValid())
            return place.error();
        if (place.name().isEmpty())
            return EBUSY; // the root itself
        struct stat st {};
        if (const int e = place.statItem(st))
            return e;
        if (!S_ISDIR(st.st_mode))
            return ::unlinkat(place.parentFd(), place.name().constData(), 0) == 0 ? 0 : errno;
        // A mount point is another volume's root: it never goes with its folder.
        if (place.isMountPoint())
            return EBUSY;
        return removeTree(place, st);
    }

private:
    FreedesktopTrash m_trash;
};

} // namespace

std::shared_ptr<FileOperations> FileOperations::system() { return std::make_shared<SystemFileOperations>(); }

QString FileOperations::describe(int error)
{
    char buffer[256] = {};
    // The GNU strerror_r returns the text, which may not be in the buffer.
#if defined(__GLIBC__) && defined(_GNU_SOURCE)
    const char *text = ::strerror_r(error, buffer, sizeof buffer);
#else
    const char *text = ::strerror_r(error, buffer, sizeof buffer) == 0 ? buffer : "Unknown error";
#endif
    return QString::fromLocal8Bit(text);
}
