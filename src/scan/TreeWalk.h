#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <memory>
#include <vector>

#include <sys/stat.h>

// A depth-first walk of a directory tree that reports the same events in the
// same order as fts(3) with FTS_PHYSICAL | FTS_NOCHDIR and no sorting: a folder
// before its contents (`directory`) and again after them (`directoryDone`), or
// `unreadable` instead of the second when it can't be listed; entries in the
// order the folder lists them.
//
// Unlike glibc's fts without FTS_CHDIR, which hands every entry to lstat() by its
// full path, entries are examined relative to an open descriptor of their folder
// (fstatat/openat), so the kernel doesn't walk the whole path again for each one.
// On deep trees that is a good part of the system time of a scan. The process's
// working directory is never changed, so other threads are unaffected.
//
// One descriptor stays open per open folder, up to a fixed number; past that the
// outermost ones give theirs up and open their folder again by full path when the
// walk comes back to them, so any depth works within the descriptor limit.
class TreeWalk
{
public:
    enum class Kind {
        directory,     // a folder, before its contents (fts FTS_D)
        directoryDone, // the same folder after them (FTS_DP)
        unreadable,    // a folder that could not be listed; no directoryDone follows (FTS_DNR)
        noStat,        // an entry that could not be examined (FTS_NS)
        file,          // a regular file (FTS_F)
        symlink,       // a symbolic link, never followed (FTS_SL)
        other,         // sockets, pipes, devices, and folders that would close a cycle
    };

    struct Entry {
        Kind kind;
        int level;             // 0 for the root
        QByteArrayView path;   // valid until the next call to next()
        QByteArrayView name;   // last component; the whole path for the root
        const struct stat *st; // null for noStat
        int error;             // errno for noStat and unreadable
    };

    // `followRoot`: a root that is a symbolic link is followed (fts FTS_COMFOLLOW).
    TreeWalk(QByteArray root, bool followRoot);
    ~TreeWalk();
    TreeWalk(const TreeWalk &) = delete;
    TreeWalk &operator=(const TreeWalk &) = delete;

    // The next event, or false at the end.
    bool next(Entry &entry);
    // Right after a `directory` event: don't enter it; no directoryDone follows.
    void skip() { m_skipPending = true; }

private:
    struct Level;

    // Opens and lists the folder of the last `directory` event as the innermost
    // level; false with errno set when it can't.
    bool openLevel();
    void closeLevel(Level &level);
    void reopen(Level &level);

    QByteArray m_root;
    bool m_followRoot;
    bool m_started = false;
    bool m_skipPending = false;
    bool m_enterPending = false; // a `directory` was reported and is to be entered next
    QByteArray m_path;           // path of the current entry
    struct stat m_st {};
    std::vector<std::unique_ptr<Level>> m_levels; // open folders, root first
    qsizetype m_depth = 0;                        // open levels in use
    int m_held = 0;                               // levels holding a descriptor
};
