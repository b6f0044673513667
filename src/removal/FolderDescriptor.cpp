#include "FolderDescriptor.h"

#include "core/Paths.h"
#include "core/RealPlace.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
#if defined(O_PATH)
// A walk needs only search permission on the folders it passes.
constexpr int stepFlags = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
#else
constexpr int stepFlags = folderFlags;
#endif

} // namespace

FolderDescriptor::~FolderDescriptor()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

FolderDescriptor::FolderDescriptor(FolderDescriptor &&other) noexcept
    : m_fd(std::exchange(other.m_fd, -1)), m_error(other.m_error), m_link(other.m_link)
{}

FolderDescriptor &FolderDescriptor::operator=(FolderDescriptor &&other) noexcept
{
    if (this != &other) {
        if (m_fd >= 0)
            ::close(m_fd);
        m_fd = std::exchange(other.m_fd, -1);
        m_error = other.m_error;
        m_link = other.m_link;
    }
    return *this;
}

FolderDescriptor FolderDescriptor::resolved(QByteArrayView path)
{
    FolderDescriptor folder;
    const RealPlace place = RealPlace::open(path);
    if (!place.isValid()) {
        folder.m_error = place.error();
        return folder;
    }
    folder.m_fd = place.name().isEmpty() ? ::open("/", folderFlags)
                                         : ::openat(place.parentFd(), place.name().constData(), folderFlags);
    if (folder.m_fd < 0)
        folder.m_error = errno;
    return folder;
}

FolderDescriptor FolderDescriptor::strict(QByteArrayView path)
{
    FolderDescriptor folder;
    if (!path.startsWith('/')) {
        folder.m_error = EINVAL;
        return folder;
    }
    int fd = ::open("/", stepFlags);
    int error = fd < 0 ? errno : 0;
    bool link = false;
    Paths::forEachPiece(path, [&](QByteArrayView view) {
        if (fd < 0)
            return;
        const QByteArray piece = view.toByteArray();
        const int next = piece == ".." ? -1 : ::openat(fd, piece.constData(), stepFlags);
        if (next < 0) {
            error = piece == ".." ? EINVAL : errno;
            struct stat st {};
            link = ::fstatat(fd, piece.constData(), &st, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(st.st_mode);
        }
        ::close(fd);
        fd = next;
    });
    folder.m_fd = fd;
    folder.m_error = fd < 0 ? error : 0;
    folder.m_link = fd < 0 && link;
    return folder;
}
