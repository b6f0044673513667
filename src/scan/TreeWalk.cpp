#include "TreeWalk.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

// Open folders that keep their descriptor at most. Past that, the outermost one
// gives its descriptor up and gets it back through ".." from its child once the
// walk comes back to it.
constexpr qsizetype maxHeld = 128;

constexpr int openFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

bool isDotOrDotDot(const char *name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

} // namespace

struct TreeWalk::Level {
    DIR *dir = nullptr;   // held open for its descriptor, or null
    int lostError = 0;    // not reached again on the way back up: why
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

int TreeWalk::folderDescriptor() const
{
    if (m_depth == 0)
        return -1;
    const Level &top = *m_levels[size_t(m_depth - 1)];
    return top.dir ? ::dirfd(top.dir) : -1;
}

void TreeWalk::closeLevel(Level &level)
{
    if (level.dir)
        ::closedir(level.dir);
    level.dir = nullptr;
    level.lostError = 0;
    level.names.clear();
    level.pos = 0;
}

bool TreeWalk::openLevel()
{
    Level *parent = m_depth > 0 ? m_levels[size_t(m_depth - 1)].get() : nullptr;
    const qsizetype nameOffset = parent ? m_path.lastIndexOf('/') + 1 : 0;
    // The innermost level always holds its descriptor.
    const int fd = parent ? ::openat(::dirfd(parent->dir), m_path.constData() + nameOffset, openFlags | O_NOFOLLOW)
                          : ::open(m_path.constData(), openFlags | (m_followRoot ? 0 : O_NOFOLLOW));
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
    level.lostError = 0;
    m_open.insert(Key{m_st.st_dev, m_st.st_ino});
    errno = 0;
    while (const dirent *entry = ::readdir(dir)) {
        if (isDotOrDotDot(entry->d_name))
            continue;
        level.names.append(entry->d_name, std::strlen(entry->d_name) + 1);
    }
    level.dir = dir;
    // Descriptors are held by the innermost levels only: give up the outermost one.
    if (m_depth - m_firstHeld > maxHeld) {
        Level &outer = *m_levels[size_t(m_firstHeld++)];
        ::closedir(outer.dir);
        outer.dir = nullptr;
    }
    return true;
}

void TreeWalk::popLevel()
{
    Level &top = *m_levels[size_t(m_depth - 1)];
    if (m_depth >= 2) {
        Level &parent = *m_levels[size_t(m_depth - 2)];
        if (!parent.dir && !parent.lostError) {
            // It must be the very folder that was left, not one moved into its place.
            const int fd = top.dir ? ::openat(::dirfd(top.dir), "..", openFlags | O_NOFOLLOW) : -1;
            struct stat st;
            DIR *dir = nullptr;
            if (fd >= 0 && ::fstat(fd, &st) == 0 && st.st_dev == parent.st.st_dev && st.st_ino == parent.st.st_ino)
                dir = ::fdopendir(fd);
            if (dir) {
                parent.dir = dir;
                m_firstHeld = m_depth - 2;
            } else {
                parent.lostError = !top.dir ? top.lostError : fd < 0 ? errno : ENOENT;
                if (fd >= 0)
                    ::close(fd);
            }
        }
    }
    m_open.erase(Key{top.st.st_dev, top.st.st_ino});
    closeLevel(top);
    --m_depth;
    m_firstHeld = std::min(m_firstHeld, m_depth);
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
        if (top.pos < top.names.size() && !top.lostError) {
            const char *name = top.names.data() + top.pos;
            const std::size_t nameLength = std::strlen(name);
            top.pos += nameLength + 1;

            m_path.truncate(top.pathLength);
            if (!m_path.endsWith('/'))
                m_path.append('/');
            const qsizetype nameOffset = m_path.size();
            m_path.append(name, qsizetype(nameLength));

            entry = Entry{Kind::other, top.level + 1, m_path, QByteArrayView(m_path).sliced(nameOffset), &m_st, 0};
            if (::fstatat(::dirfd(top.dir), name, &m_st, AT_SYMLINK_NOFOLLOW) != 0) {
                entry.kind = Kind::noStat;
                entry.st = nullptr;
                entry.error = errno;
            } else if (S_ISREG(m_st.st_mode)) {
                entry.kind = Kind::file;
            } else if (S_ISDIR(m_st.st_mode)) {
                if (!m_open.contains(Key{m_st.st_dev, m_st.st_ino})) {
                    entry.kind = Kind::directory;
                    m_enterPending = true;
                }
            } else if (S_ISLNK(m_st.st_mode)) {
                entry.kind = Kind::symlink;
            }
            return true;
        }

        // The folder is done, or the rest of it can't be reached.
        m_path.truncate(top.pathLength);
        const bool lost = top.pos < top.names.size();
        entry = Entry{lost ? Kind::unreadable : Kind::directoryDone, top.level, m_path,
                      QByteArrayView(m_path).sliced(top.nameOffset), &top.st,   lost ? top.lostError : 0};
        popLevel();
        return true;
    }
    return false;
}
