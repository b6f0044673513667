#include "FileReads.h"

#include "core/LongPath.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace FileReads {

int openRegular(const QByteArray &path, qint64 &length, int &error)
{
    // O_NONBLOCK keeps a path that was swapped for a FIFO from hanging the open.
    const int fd = LongPath::open(path, O_RDONLY | O_NOCTTY | O_NONBLOCK);
    if (fd < 0) {
        error = errno;
        return -1;
    }
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        error = S_ISREG(st.st_mode) ? errno : 0;
        ::close(fd);
        return -1;
    }
    length = qint64(st.st_size);
    return fd;
}

ReadResult readAt(int fd, char *buffer, qint64 count, qint64 offset, qint64 length)
{
    ReadResult r;
    while (r.bytes < count) {
        const ssize_t n = ::pread(fd, buffer + r.bytes, size_t(count - r.bytes), off_t(offset + r.bytes));
        if (n < 0) {
            if (errno == EINTR)
                continue;
            r.failed = true;
            break;
        }
        if (n == 0)
            break;
        r.bytes += n;
        // A short read of a regular file stops at its end.
        if (offset + r.bytes == length && r.bytes < count)
            break;
    }
    return r;
}

Fd::~Fd()
{
    if (fd >= 0)
        ::close(fd); // a closing error changes nothing that was read
}

} // namespace FileReads
