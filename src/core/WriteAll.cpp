#include "WriteAll.h"

#include <cerrno>

#include <unistd.h>

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
