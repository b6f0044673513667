#include "TreeWalk.h"

#include <cerrno>
#include <cstring>
#include <string>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

// Open folders that keep their descriptor at most. Past that, the outermost one
// gives its descriptor up and opens its folder again, by full path, once the walk
// comes back to it.
constexpr int maxHeld = 128;

constexpr int openFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

bool isDotOrDotDot(const char *name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

} // namespace

struct TreeWalk::Level {
    DIR *dir = nullptr;   // held open for its descriptor, or null
    bool byPath = false;  // reopening failed: examine the rest by full path
    std::string names;    // the listing, each name followed by a NUL
    std::size_t pos = 0;  // next name in `names`
    qsizetype pathLength; // length of this folder's path in m_path
    qsizetype nameOffset; // where its last component starts in m_path
    int level = 0;
    struct stat st {}; // the folder's own stat, for cycles and the closing event
};

TreeWalk::TreeWalk(QByteArray root, bool followRoot) : m_root(std::move(root)), m_followRoot(followRoot) {}

TreeWalk::~TreeWalk()
{
    for (qsizetype i = 0; i < m_depth; ++i)
        closeLevel(*m_levels[size_t(i)]);
}

void TreeWalk::closeLevel(Level &level)
{
    if (level.dir) {
        ::closedir(level.dir);
        --m_held;
    }
    level.dir = nullptr;
    level.byPath = false;
    level.names.clear();
    level.pos = 0;
}

bool TreeWalk::openLevel()
{
    Level *parent = m_depth > 0 ? m_levels[size_t(m_depth - 1)].get() : nullptr;
    const qsizetype nameOffset = parent ? m_path.lastIndexOf('/') + 1 : 0;
    int fd;
    if (!parent)
        fd = ::open(m_path.constData(), openFlags | (m_followRoot ? 0 : O_NOFOLLOW));
    else if (parent->dir)
        fd = ::openat(::dirfd(parent->dir), m_path.constData() + nameOffset, openFlags | O_NOFOLLOW);
    else
        fd = ::open(m_path.constData(), openFlags | O_NOFOLLOW);
    if (fd < 0)
        return false;
    DIR *dir = ::fdopendir(fd);
    if (!dir) {
        const int error = errno;
        ::close(fd);
        errno = error;
        return false;
    }

    if (size_t(m_depth) == m_levels.size())
        m_levels.push_back(std::make_unique<Level>());
    Level &level = *m_levels[size_t(m_depth)];
    ++m_depth;
    level.names.clear();
    level.pos = 0;
    level.pathLength = m_path.size();
    level.nameOffset = nameOffset;
    level.level = parent ? parent->level + 1 : 0;
    level.st = m_st;
    errno = 0;
    while (const dirent *entry = ::readdir(dir)) {
        if (isDotOrDotDot(entry->d_name))
            continue;
        level.names.append(entry->d_name, std::strlen(entry->d_name) + 1);
    }
    level.dir = dir;
    level.byPath = false;
    if (++m_held > maxHeld) {
        for (qsizetype i = 0; i + 1 < m_depth; ++i) {
            Level &outer = *m_levels[size_t(i)];
            if (outer.dir) {
                ::closedir(outer.dir);
                outer.dir = nullptr;
                --m_held;
                break;
            }
        }
    }
    return true;
}

// Opens a folder again that gave its descriptor up, making sure it is still the
// same folder; if not, the rest of it is examined by full path.
void TreeWalk::reopen(Level &level)
{
    const QByteArray path = m_path.left(level.pathLength);
    const int fd = ::open(path.constData(), openFlags | (level.level == 0 && m_followRoot ? 0 : O_NOFOLLOW));
    struct stat st;
    if (fd >= 0 && ::fstat(fd, &st) == 0 && st.st_dev == level.st.st_dev && st.st_ino == level.st.st_ino) {
        if (DIR *dir = ::fdopendir(fd)) {
            level.dir = dir;
            ++m_held;
            return;
        }
    }
    if (fd >= 0)
        ::close(fd);
    level.byPath = true;
}

bool TreeWalk::next(Entry &entry)
{
    if (!m_started) {
        m_started = true;
        m_path = m_root;
        entry = Entry{Kind::other, 0, m_path, m_path, &m_st, 0};
        const int status = m_followRoot ? ::stat(m_path.constData(), &m_st) : ::lstat(m_path.constData(), &m_st);
        if (status != 0) {
            entry.kind = Kind::noStat;
            entry.st = nullptr;
            entry.error = errno;
        } else if (S_ISDIR(m_st.st_mode)) {
            entry.kind = Kind::directory;
            m_enterPending = true;
        } else if (S_ISREG(m_st.st_mode)) {
            entry.kind = Kind::file;
        } else if (S_ISLNK(m_st.st_mode)) {
            entry.kind = Kind::symlink;
        }
        return true;
    }

    if (m_enterPending) {
        m_enterPending = false;
        if (m_skipPending) {
            m_skipPending = false;
        } else if (!openLevel()) {
            const int error = errno;
            const int level = m_depth > 0 ? m_levels[size_t(m_depth - 1)]->level + 1 : 0;
            const qsizetype nameOffset = level > 0 ? m_path.lastIndexOf('/') + 1 : 0;
            entry = Entry{Kind::unreadable, level, m_path, QByteArrayView(m_path).sliced(nameOffset), &m_st, error};
            return true;
        }
    }
    m_skipPending = false;

    while (m_depth > 0) {
        Level &top = *m_levels[size_t(m_depth - 1)];
        if (top.pos < top.names.size()) {
            if (!top.dir && !top.byPath)
                reopen(top);
            const char *name = top.names.data() + top.pos;
            const std::size_t nameLength = std::strlen(name);
            top.pos += nameLength + 1;

            m_path.truncate(top.pathLength);
            if (!m_path.endsWith('/'))
                m_path.append('/');
            const qsizetype nameOffset = m_path.size();
            m_path.append(name, qsizetype(nameLength));

            entry = Entry{Kind::other, top.level + 1, m_path, QByteArrayView(m_path).sliced(nameOffset), &m_st, 0};
            const int status = top.dir ? ::fstatat(::dirfd(top.dir), name, &m_st, AT_SYMLINK_NOFOLLOW)
                                       : ::lstat(m_path.constData(), &m_st);
            if (status != 0) {
                entry.kind = Kind::noStat;
                entry.st = nullptr;
                entry.error = errno;
            } else if (S_ISREG(m_st.st_mode)) {
                entry.kind = Kind::file;
            } else if (S_ISDIR(m_st.st_mode)) {
                bool cycle = false;
                for (qsizetype i = 0; i < m_depth && !cycle; ++i) {
                    const struct stat &up = m_levels[size_t(i)]->st;
                    cycle = up.st_ino == m_st.st_ino && up.st_dev == m_st.st_dev;
                }
                if (!cycle) {
                    entry.kind = Kind::directory;
                    m_enterPending = true;
                }
            } else if (S_ISLNK(m_st.st_mode)) {
                entry.kind = Kind::symlink;
            }
            return true;
        }

        // The folder is done.
        m_path.truncate(top.pathLength);
        entry =
            Entry{Kind::directoryDone, top.level, m_path, QByteArrayView(m_path).sliced(top.nameOffset), &top.st, 0};
        closeLevel(top);
        --m_depth;
        return true;
    }
    return false;
}
