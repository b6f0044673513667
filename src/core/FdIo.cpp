#include "FdIo.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace FdIo {

bool writeAll(int fd, QByteArrayView data)
{
    qsizetype done = 0;
    while (done < data.size()) {
        const ssize_t n = ::write(fd, data.data() + done, size_t(data.size() - done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n == 0)
            errno = EIO;
        if (n <= 0)
            return false;
        done += n;
    }
    return true;
}

QByteArray readAt(int dirFd, const char *name, int *error)
{
    QByteArray content;
    const int fd = ::openat(dirFd, name, O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
    if (fd < 0) {
        if (error)
            *error = errno;
        return content;
    }
    char buffer[16384];
    ssize_t n;
    while ((n = ::read(fd, buffer, sizeof buffer)) != 0) {
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0) {
            if (error)
                *error = errno;
            break;
        }
        content.append(buffer, n);
    }
    ::close(fd);
    return content;
}

} // namespace FdIo
