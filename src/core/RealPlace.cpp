#include "RealPlace.h"

#include "Paths.h"

#include <QtGlobal>

#include <cerrno>
#include <utility>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

#if defined(O_PATH)
// Search permission is all a step needs; the folder need not be readable.
constexpr int stepFlags = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
#else
constexpr int stepFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
#endif
constexpr int maxLinks = 40; // as the kernel's own limit

void closeFd(int &fd)
{
    if (fd >= 0)
        ::close(fd);
    fd = -1;
}

// The pieces of a path, in order; empty pieces and "." left out.
void split(QByteArrayView path, std::vector<QByteArray> &into)
{
    Paths::forEachPiece(path, [&into](QByteArrayView piece) { into.push_back(piece.toByteArray()); });
}

QByteArray readLink(int dirFd, const QByteArray &name, int &error)
{
    QByteArray target(256, Qt::Uninitialized);
    for (;;) {
        const ssize_t n = ::readlinkat(dirFd, name.constData(), target.data(), size_t(target.size()));
        if (n < 0) {
            error = errno;
            return {};
        }
        if (n < target.size()) {
            target.truncate(n);
            return target;
        }
        target.resize(target.size() * 2);
    }
}

// Moves `fd` to `name` inside it ("/" when `fd` is -1) and stats where it
// landed; on failure closes `fd`, sets `error` and returns false.
bool step(int &fd, const char *name, struct stat &st, int &error)
{
    const int next = fd < 0 ? ::open(name, stepFlags) : ::openat(fd, name, stepFlags);
    if (next < 0 || ::fstat(next, &st) != 0) {
        error = errno;
        if (next >= 0)
            ::close(next);
        closeFd(fd);
        return false;
    }
    closeFd(fd);
    fd = next;
    return true;
}

// Opens the folder the pieces lead to, from the root down, following links by
// hand. Fills `resolved` with the canonical pieces. Returns the descriptor, or
// -1 with `error` set.
int resolveFolder(std::vector<QByteArray> pending, std::vector<QByteArray> &resolved, struct stat &st, int &error)
{
    int fd = -1;
    if (!step(fd, "/", st, error))
        return -1;
    resolved.clear();
    int links = 0;
    // The pieces still to walk, last first, so that a link's text can be put in
    // front cheaply.
    std::vector<QByteArray> todo(pending.rbegin(), pending.rend());
    while (!todo.empty()) {
        const QByteArray piece = std::move(todo.back());
        todo.pop_back();
        if (piece == "..") {
            if (resolved.empty())
                continue;
            if (!step(fd, "..", st, error))
                return -1;
            resolved.pop_back();
            continue;
        }
        struct stat entry {};
        if (::fstatat(fd, piece.constData(), &entry, AT_SYMLINK_NOFOLLOW) != 0) {
            error = errno;
            closeFd(fd);
            return -1;
        }
        if (S_ISLNK(entry.st_mode)) {
            if (++links > maxLinks) {
                error = ELOOP;
                closeFd(fd);
                return -1;
            }
            const QByteArray target = readLink(fd, piece, error);
            if (error) {
                closeFd(fd);
                return -1;
            }
            std::vector<QByteArray> pieces;
            split(target, pieces);
            todo.insert(todo.end(), pieces.rbegin(), pieces.rend());
            if (target.startsWith('/')) {
                closeFd(fd);
                if (!step(fd, "/", st, error))
                    return -1;
                resolved.clear();
            }
            continue;
        }
        if (!S_ISDIR(entry.st_mode)) {
            error = ENOTDIR;
            closeFd(fd);
            return -1;
        }
        struct stat opened {};
        if (!step(fd, piece.constData(), opened, error))
            return -1;
        // Swapped between the look and the open: not the folder that was looked at.
        if (opened.st_dev != entry.st_dev || opened.st_ino != entry.st_ino) {
            error = ESTALE;
            closeFd(fd);
            return -1;
        }
        st = opened;
        resolved.push_back(piece);
    }
    return fd;
}

QByteArray joinPieces(const std::vector<QByteArray> &pieces)
{
    if (pieces.empty())
        return QByteArrayLiteral("/");
    QByteArray out;
    for (const QByteArray &piece : pieces) {
        out.append('/');
        out.append(piece);
    }
    return out;
}

} // namespace

RealPlace::~RealPlace() { closeFd(m_fd); }

RealPlace::RealPlace(RealPlace &&other) noexcept
    : m_fd(std::exchange(other.m_fd, -1)), m_error(other.m_error), m_parent(std::move(other.m_parent)),
      m_name(std::move(other.m_name)), m_parentStat(other.m_parentStat)
{}

RealPlace &RealPlace::operator=(RealPlace &&other) noexcept
{
    if (this != &other) {
        closeFd(m_fd);
        m_fd = std::exchange(other.m_fd, -1);
        m_error = other.m_error;
        m_parent = std::move(other.m_parent);
        m_name = std::move(other.m_name);
        m_parentStat = other.m_parentStat;
    }
    return *this;
}

RealPlace RealPlace::open(QByteArrayView path)
{
    RealPlace place;
    if (path.isEmpty()) {
        place.m_error = ENOENT;
        return place;
    }
    std::vector<QByteArray> pieces;
    if (!path.startsWith('/')) {
        std::vector<char> cwd(4096);
        while (!::getcwd(cwd.data(), cwd.size())) {
            if (errno != ERANGE) {
                place.m_error = errno;
                return place;
            }
            cwd.resize(cwd.size() * 2);
        }
        split(QByteArrayView(cwd.data()), pieces);
    }
    split(path, pieces);

    // A last piece of ".." names a folder that only resolving can find; it is
    // resolved whole and its real name is the one kept.
    const bool dotsLast = !pieces.empty() && pieces.back() == "..";
    if (!dotsLast && !pieces.empty()) {
        place.m_name = std::move(pieces.back());
        pieces.pop_back();
    }
    std::vector<QByteArray> resolved;
    place.m_fd = resolveFolder(std::move(pieces), resolved, place.m_parentStat, place.m_error);
    if (place.m_fd < 0)
        return place;
    if (dotsLast && !resolved.empty()) {
        place.m_name = resolved.back();
        resolved.pop_back();
        if (!step(place.m_fd, "..", place.m_parentStat, place.m_error))
            return place;
    }
    place.m_parent = joinPieces(resolved);
    return place;
}

RealPlace RealPlace::child(QByteArrayView name) const
{
    RealPlace place;
    if (m_fd < 0 || m_name.isEmpty()) {
        place.m_error = m_fd < 0 ? m_error : EINVAL;
        return place;
    }
    struct stat looked {};
    if (::fstatat(m_fd, m_name.constData(), &looked, AT_SYMLINK_NOFOLLOW) != 0) {
        place.m_error = errno;
        return place;
    }
    if (!S_ISDIR(looked.st_mode)) {
        place.m_error = ENOTDIR;
        return place;
    }
    place.m_fd = ::openat(m_fd, m_name.constData(), stepFlags);
    if (place.m_fd < 0 || ::fstat(place.m_fd, &place.m_parentStat) != 0) {
        place.m_error = errno;
        closeFd(place.m_fd);
        return place;
    }
    if (place.m_parentStat.st_dev != looked.st_dev || place.m_parentStat.st_ino != looked.st_ino) {
        place.m_error = ESTALE;
        closeFd(place.m_fd);
        return place;
    }
    // Judged on the folder opened, not on its name, which may change meanwhile.
    const quint64 mount = mountOf(place.m_fd, "");
    if (place.m_parentStat.st_dev != m_parentStat.st_dev || (mount != 0 && mount != mountOf(m_fd, ""))) {
        place.m_error = EXDEV;
        closeFd(place.m_fd);
        return place;
    }
    place.m_parent = path();
    place.m_name = name.toByteArray();
    return place;
}

QByteArray RealPlace::path() const
{
    if (m_name.isEmpty())
        return m_parent;
    if (m_parent == "/")
        return '/' + m_name;
    return m_parent + '/' + m_name;
}

bool RealPlace::isMountPoint() const
{
    struct stat st {};
    if (m_name.isEmpty() || statItem(st) != 0 || !S_ISDIR(st.st_mode))
        return false;
    if (st.st_dev != m_parentStat.st_dev)
        return true;
    const quint64 mount = mountOf(m_fd, m_name.constData());
    return mount != 0 && mount != mountOf(m_fd, "");
}

quint64 RealPlace::mountOf(int dirFd, const char *name)
{
#if defined(STATX_MNT_ID)
    struct statx sx {};
    const int flags = AT_SYMLINK_NOFOLLOW | (name[0] == '\0' ? AT_EMPTY_PATH : 0);
    if (::statx(dirFd, name, flags, STATX_MNT_ID, &sx) == 0 && (sx.stx_mask & STATX_MNT_ID))
        return sx.stx_mnt_id;
#else
    Q_UNUSED(dirFd);
    Q_UNUSED(name);
#endif
    return 0;
}

int RealPlace::statItem(struct stat &st) const
{
    if (m_fd < 0)
        return m_error ? m_error : EBADF;
    if (m_name.isEmpty())
        return ::fstat(m_fd, &st) == 0 ? 0 : errno;
    return ::fstatat(m_fd, m_name.constData(), &st, AT_SYMLINK_NOFOLLOW) == 0 ? 0 : errno;
}

QByteArrayList RealPlace::listNames() const
{
    QByteArrayList names;
    const int fd = ::openat(m_fd, m_name.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    DIR *dir = fd >= 0 ? ::fdopendir(fd) : nullptr;
    if (!dir) {
        if (fd >= 0)
            ::close(fd);
        return names;
    }
    while (const dirent *entry = ::readdir(dir)) {
        const char *n = entry->d_name;
        if (!(n[0] == '.' && (n[1] == '\0' || (n[1] == '.' && n[2] == '\0'))))
            names.append(QByteArray(n));
    }
    ::closedir(dir);
    return names;
}
