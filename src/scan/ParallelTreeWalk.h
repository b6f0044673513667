// The walk of TreeWalk, with the folders listed and their entries examined by
// several threads ahead of the one that reads the events. The events, their
// order and their contents are exactly those of TreeWalk on the same tree; only
// the system calls move to other threads.

#pragma once

#include "SkipSet.h"
#include "TreeWalk.h"

#include <QByteArray>
#include <QString>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <unordered_set>
#include <vector>

// Listers take folders from a stack, newest first, so they run ahead of the
// reader in the same depth-first order and the listing the reader needs next is
// usually ready. A listing keeps its folder's descriptor open until the reader
// has been through it: its subfolders are opened relative to it, never by path.
// At most `readyFolders` listings (and about `readyEntries` entries) wait for
// the reader; past that the listers pause. A folder the reader reaches before
// any lister did, it lists itself.
//
// Folders the reader will skip (hidden ones when asked, and those of `skips`)
// are not listed ahead; should the reader enter one after all, it lists it then.
//
// Descriptors: the reader's own open folders are held as TreeWalk holds them
// (the innermost few, and ".." on the way back up), plus one per waiting
// listing and one per lister at work.
class ParallelTreeWalk
{
public:
    using Kind = TreeWalk::Kind;
    using Entry = TreeWalk::Entry;
    // Called on a lister for each subfolder with the descriptor of the folder
    // holding it; its answer comes back with that folder's `directory` event.
    using Probe = std::function<QString(QByteArrayView name, int parentFd)>;

    struct Options {
        int threads = 2;
        bool skipHidden = false;
        SkipSet skips;
        Probe probe;
        int readyFolders = 256;
        qsizetype readyEntries = 32768;
    };

    ParallelTreeWalk(QByteArray root, bool followRoot, Options options);
    ~ParallelTreeWalk();
    ParallelTreeWalk(const ParallelTreeWalk &) = delete;
    ParallelTreeWalk &operator=(const ParallelTreeWalk &) = delete;

    // As TreeWalk.
    bool next(Entry &entry);
    void skip() { m_skipPending = true; }
    // The probe's answer for the folder of the last `directory` event (null for
    // the root).
    QString probed() const { return m_probed; }

private:
    struct Node;
    struct Listing;
    using NodePtr = std::shared_ptr<Node>;
    using Key = InodeKey;
    using KeyHash = InodeKeyHash;
    struct Level;

    void startListers();
    void stopListers();
    void listerLoop();
    // With the lock held: lists the newest folder waiting, if the window has
    // room; false when there was nothing to list.
    // `byLister`: called by a lister, which goes on listing afterwards.
    bool listNext(std::unique_lock<std::mutex> &lock, bool byLister);
    void listHere(std::unique_lock<std::mutex> &lock, const NodePtr &node, bool byLister);
    // Lists `node` (opened relative to `parentFd`, or by path for the root) and
    // examines every entry; no lock held.
    std::unique_ptr<Listing> list(const NodePtr &node, int parentFd);
    // With the lock held: hands a finished listing to its node and queues its
    // subfolders, or drops it when the node was given up meanwhile.
    void publish(const NodePtr &node, std::unique_ptr<Listing> listing, bool byLister);
    bool wanted(const Node &node) const;
    // The listing of `node` for the reader: taken when ready, waited for when a
    // lister is at it, made here otherwise.
    std::unique_ptr<Listing> take(const NodePtr &node);
    // With the lock held: `node` and all below it are given up.
    void discard(const NodePtr &node);
    void releaseDescriptor(Node &node);
    void wakeListers();
    // With the lock held: the reader's innermost folder is now `folder`, whose
    // subfolders not yet listed are left to the reader.
    void readerIn(const Node *folder);
    bool isOpenAbove(const Node &parent, Key key) const;
    bool enterPending(Entry &entry);
    void popLevel();

    QByteArray m_root;
    bool m_followRoot;
    Options m_options;
    qsizetype m_longestSkip = 0;

    // Shared with the listers, under m_mutex.
    std::mutex m_mutex;
    std::condition_variable m_work;  // listers: something to list or room to list it
    std::condition_variable m_ready; // reader: a listing was published
    std::vector<NodePtr> m_stack;
    std::unordered_multimap<Key, Node *, KeyHash> m_live; // nodes by device and inode, for cycles
    int m_readyCount = 0;
    qsizetype m_readyEntries = 0;
    bool m_stop = false;
    bool m_windowFull = false; // listers wait for room
    int m_idleListers = 0;
    const Node *m_awaited = nullptr;      // what the reader waits for
    const Node *m_readerFolder = nullptr; // the reader's innermost folder
    std::vector<NodePtr> m_setAside;      // its subfolders, out of the listers' way
    std::vector<std::thread> m_listers;

    // The reader's own.
    bool m_started = false;
    bool m_skipPending = false;
    NodePtr m_pendingNode;                    // the folder of the last `directory` event
    const struct stat *m_pendingSt = nullptr; // and its stat
    QByteArray m_path;
    struct stat m_rootSt {};
    struct stat m_st {}; // of an entry the reader examined itself
    std::vector<std::unique_ptr<Level>> m_levels;
    qsizetype m_depth = 0;
    qsizetype m_firstHeld = 0;
    std::unordered_set<Key, KeyHash> m_open;
    QString m_probed;
};
