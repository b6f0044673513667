// A depth-first walk of a directory tree that reports the same events in the
// same order as fts(3) with FTS_PHYSICAL | FTS_NOCHDIR and no sorting. Owns the
// descriptors of the folders it is in; one walk, one thread.

#pragma once

#include "InodeKey.h"

#include <QByteArray>
#include <QByteArrayView>

#include <memory>
#include <unordered_set>
#include <vector>

#include <sys/stat.h>

// A folder comes before its contents (`directory`) and again after them
// (`directoryDone`), or `unreadable` instead of the second when it can't be
// listed; entries come in the order the folder lists them.
//
// Unlike glibc's fts without FTS_CHDIR, which hands every entry to lstat() by its
// full path, entries are examined relative to an open descriptor of their folder
// (fstatat/openat), so the kernel doesn't walk the whole path again for each one.
// On deep trees that is a good part of the system time of a scan. The process's
// working directory is never changed, so other threads are unaffected.
//
// One descriptor stays open per open folder, up to a fixed number; past that the
// outermost ones give theirs up. On the way back up, a folder without one opens
// its parent again through "..", checked against the device and inode recorded on
// the way down, so nothing is ever opened by its full path: any depth works, with
// paths of any length, within a fixed number of descriptors.
class TreeWalk
{
public:
    enum class Kind {
        directory,     // a folder, before its contents (fts FTS_D)
        directoryDone, // the same folder after them (FTS_DP)
        unreadable,    // a folder that could not be listed, or not reached again to list the rest of
                       // it; no directoryDone follows (FTS_DNR)
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
    // An open descriptor of the folder holding the entry of the last event (always
    // there for a `directory` event), for looking around it with *at() calls; -1
    // for the root and a folder that could not be reached again. Owned by the
    // walk and valid until the next call to next().
    int folderDescriptor() const;

private:
    struct Level;
    using Key = InodeKey;
    using KeyHash = InodeKeyHash;

    // Opens and lists the folder of the last `directory` event as the innermost
    // level; false with errno set when it can't.
    bool openLevel();
    void closeLevel(Level &level);
    // Closes the innermost level, first opening its parent again through ".." when
    // the parent gave its descriptor up.
    void popLevel();

    QByteArray m_root;
    bool m_followRoot;
    bool m_started = false;
    bool m_skipPending = false;
    bool m_enterPending = false; // a `directory` was reported and is to be entered next
    QByteArray m_path;           // path of the current entry
    struct stat m_st {};
    std::vector<std::unique_ptr<Level>> m_levels; // open folders, root first
    qsizetype m_depth = 0;                        // open levels in use
    qsizetype m_firstHeld = 0;                    // levels before this one have given their descriptor up
    std::unordered_set<Key, KeyHash> m_open;      // device and inode of each open level
};
