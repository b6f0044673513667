#include "LongPath.h"

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <unistd.h>

namespace LongPath {

namespace {

// Opening a folder only to pass through it needs no right to list it.
#if defined(O_PATH)
constexpr int passFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;
#elif defined(O_SEARCH)
constexpr int passFlags = O_SEARCH | O_DIRECTORY | O_CLOEXEC;
#else
constexpr int passFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
#endif

int retryOpenAt(int dir, const char *name, int flags, mode_t mode)
{
    int fd = -1;
    do {
        fd = ::openat(dir, name, flags, mode);
    } while (fd < 0 && errno == EINTR);
    return fd;
}

// Calls `last(dir, rest)` with a descriptor of the folder the tail of `path`
// is relative to (AT_FDCWD or an opened one) and that tail, below PATH_MAX.
template <typename F>
auto walk(const QByteArray &path, F last) -> decltype(last(0, ""))
{
    using Result = decltype(last(0, ""));
    int dir = AT_FDCWD;
    qsizetype pos = 0;
    const auto fail = [&](int error) {
        if (dir != AT_FDCWD)
            ::close(dir);
        errno = error;
        return Result(-1);
    };
    while (path.size() - pos >= PATH_MAX) {
        // The longest run of whole components that fits, leading slash included.
        const qsizetype slash = path.lastIndexOf('/', pos + PATH_MAX - 1);
        if (slash <= pos)
            return fail(ENAMETOOLONG);
        const QByteArray chunk = path.mid(pos, slash - pos);
        const int next = retryOpenAt(dir, chunk.constData(), passFlags, 0);
        if (next < 0)
            return fail(errno);
        if (dir != AT_FDCWD)
            ::close(dir);
        dir = next;
        pos = slash + 1;
        while (pos < path.size() && path[pos] == '/')
            ++pos;
    }
    const Result result = last(dir, pos < path.size() ? path.constData() + pos : ".");
    const int error = errno;
    if (dir != AT_FDCWD)
        ::close(dir);
    errno = error;
    return result;
}

} // namespace

int open(const QByteArray &path, int flags, mode_t mode)
{
    flags |= O_CLOEXEC;
    if (path.size() < PATH_MAX)
        return retryOpenAt(AT_FDCWD, path.constData(), flags, mode);
    return walk(path, [&](int dir, const char *rest) { return retryOpenAt(dir, rest, flags, mode); });
}

bool stat(const QByteArray &path, struct stat &st, bool follow)
{
    const int how = follow ? 0 : AT_SYMLINK_NOFOLLOW;
    if (path.size() < PATH_MAX)
        return ::fstatat(AT_FDCWD, path.constData(), &st, how) == 0;
    return walk(path, [&](int dir, const char *rest) { return ::fstatat(dir, rest, &st, how); }) == 0;
}

} // namespace LongPath
