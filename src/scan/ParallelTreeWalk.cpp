#include "ParallelTreeWalk.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>
#if defined(Q_OS_LINUX)
#include <sys/syscall.h>
#endif

namespace {

// The reader's own open folders that keep their descriptor, at most; as TreeWalk.
constexpr qsizetype maxHeld = 128;

constexpr int openFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

bool isDotOrDotDot(const char *name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

// Calls `add(name, length)` for each entry of the open folder `fd` but "." and
// "..", leaving `fd` open; false with errno set when the folder can't be read.
template <class Add>
bool readNames(int fd, const Add &add)
{
#if defined(Q_OS_LINUX)
    // Straight from the kernel, in large batches: no stream to set up per folder.
    alignas(dirent64) static thread_local char buffer[64 * 1024];
    for (;;) {
        const long got = ::syscall(SYS_getdents64, fd, buffer, sizeof buffer);
        if (got < 0)
            return false;
        if (got == 0)
            return true;
        for (long at = 0; at < got;) {
            const auto *entry = reinterpret_cast<const dirent64 *>(buffer + at);
            at += entry->d_reclen;
            if (!isDotOrDotDot(entry->d_name))
                add(entry->d_name, std::strlen(entry->d_name));
        }
    }
#else
    const int own = ::dup(fd);
    DIR *dir = own >= 0 ? ::fdopendir(own) : nullptr;
    if (!dir) {
        if (own >= 0)
            ::close(own);
        return false;
    }
    while (const dirent *entry = ::readdir(dir))
        if (!isDotOrDotDot(entry->d_name))
            add(entry->d_name, std::strlen(entry->d_name));
    ::closedir(dir);
    return true;
#endif
}

} // namespace

// Every name of a folder, and what the lister found out about the first of
// them. The rest of a very large folder the reader examines itself, as it goes,
// so that a folder of millions of entries costs no more than their names.
struct ParallelTreeWalk::Listing {
    struct Name {
        std::uint32_t offset;
        std::uint32_t length;
    };
    struct Examined {
        int error; // errno when it could not be examined
        int child; // index into `children` for a subfolder, or -1
        struct stat st;
    };
    int error = 0;     // why the folder could not be opened, or 0
    int fd = -1;       // the folder's, until published
    std::string names; // the names, each followed by a NUL
    std::vector<Name> entries;
    std::vector<Examined> examined; // the first entries
    std::vector<NodePtr> children;  // null where given up or entered
    qsizetype weight() const { return qsizetype(examined.size()) + 1; }
};

struct ParallelTreeWalk::Node {
    enum class State { queued, unwanted, blocked, listing, ready, taken };

    NodePtr parent;
    QByteArray name; // the whole path for the root
    QByteArray path; // only while no longer than the longest skipped path
    qsizetype pathLength = 0;
    Key key{};
    int level = 0;
    State state = State::queued;
    bool discarded = false;
    bool live = false; // in m_live
    int fd = -1;       // held open for its subfolders
    int fdUsers = 0;   // listers opening a subfolder through it
    bool closeWhenFree = false;
    QString probe;
    std::unique_ptr<Listing> listing; // while ready
    std::vector<NodePtr> blocked;     // subfolders waiting for `fd` to come back

    ~Node()
    {
        if (fd >= 0)
            ::close(fd);
    }
};

struct ParallelTreeWalk::Level {
    NodePtr node;
    std::unique_ptr<Listing> listing;
    std::size_t pos = 0;
    std::size_t count = 0; // entries in the listing
    qsizetype pathLength = 0;
    qsizetype nameOffset = 0;
    int level = 0;
    int lostError = 0;
    struct stat st {};
};

ParallelTreeWalk::ParallelTreeWalk(QByteArray root, bool followRoot, Options options)
    : m_root(std::move(root)), m_followRoot(followRoot), m_options(std::move(options)),
      m_longestSkip(m_options.skips.longestMatch())
{
    m_options.threads = std::max(m_options.threads, 1);
}

ParallelTreeWalk::~ParallelTreeWalk()
{
    stopListers();
    std::lock_guard lock(m_mutex);
    // Break every node's hold on its subfolders, so nothing outlives the walk.
    for (qsizetype i = m_depth - 1; i >= 0; --i) {
        Level &level = *m_levels[size_t(i)];
        if (level.listing)
            for (const NodePtr &child : level.listing->children)
                if (child)
                    discard(child);
        discard(level.node);
        level.listing.reset();
        level.node.reset();
    }
    if (m_pendingNode)
        discard(m_pendingNode);
    m_stack.clear();
    m_setAside.clear();
}

void ParallelTreeWalk::startListers()
{
    for (int i = 0; i < m_options.threads; ++i)
        m_listers.emplace_back([this] { listerLoop(); });
}

void ParallelTreeWalk::stopListers()
{
    {
        std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_work.notify_all();
    for (std::thread &lister : m_listers)
        lister.join();
    m_listers.clear();
}

void ParallelTreeWalk::readerIn(const Node *folder)
{
    m_readerFolder = folder;
    // Back to the listers, but for the folder the reader is going into.
    bool pushed = false;
    for (auto it = m_setAside.rbegin(); it != m_setAside.rend(); ++it)
        if (it->get() != folder) {
            m_stack.push_back(std::move(*it));
            pushed = true;
        }
    m_setAside.clear();
    if (m_idleListers == 0 || m_windowFull)
        return;
    if (pushed) {
        m_work.notify_all();
        return;
    }
    // Idle listers sleep until work comes. Work they can take may have been
    // there all along: the other subfolders of a folder the reader listed
    // itself and has just left for one of them. Those near the top of the
    // stack that are the reader's own (the folder it goes into, its
    // subfolders) don't count; one lister is woken for anything past them.
    constexpr int looked = 8;
    int seen = 0;
    for (auto it = m_stack.rbegin(); it != m_stack.rend() && seen < looked; ++it, ++seen) {
        const Node *node = it->get();
        if (node == folder || node->parent.get() == folder || node->discarded || node->state != Node::State::queued)
            continue;
        m_work.notify_one();
        return;
    }
}

void ParallelTreeWalk::wakeListers()
{
    // Once the listers stopped for a full window, they go on when half of it is
    // free, rather than for each listing taken: one wake-up per many folders.
    if (m_windowFull && m_readyCount <= m_options.readyFolders / 2 && m_readyEntries <= m_options.readyEntries / 2) {
        m_windowFull = false;
        m_work.notify_all();
    }
}

void ParallelTreeWalk::releaseDescriptor(Node &node)
{
    if (node.fd < 0)
        return;
    if (node.fdUsers > 0) {
        node.closeWhenFree = true;
        return;
    }
    ::close(node.fd);
    node.fd = -1;
    node.closeWhenFree = false;
}

void ParallelTreeWalk::discard(const NodePtr &start)
{
    std::vector<NodePtr> todo{start};
    while (!todo.empty()) {
        const NodePtr node = std::move(todo.back());
        todo.pop_back();
        if (!node || node->discarded)
            continue;
        node->discarded = true;
        if (node->live) {
            auto [at, end] = m_live.equal_range(node->key);
            for (; at != end; ++at)
                if (at->second == node.get()) {
                    m_live.erase(at);
                    break;
                }
            node->live = false;
        }
        if (node->state == Node::State::ready) {
            --m_readyCount;
            m_readyEntries -= node->listing->weight();
            wakeListers();
        }
        if (node->listing) {
            for (NodePtr &child : node->listing->children)
                if (child)
                    todo.push_back(std::move(child));
            node->listing.reset();
        }
        for (NodePtr &child : node->blocked)
            todo.push_back(std::move(child));
        node->blocked.clear();
        releaseDescriptor(*node);
    }
}

bool ParallelTreeWalk::wanted(const Node &node) const
{
    if (m_options.skipHidden && node.name.startsWith('.'))
        return false;
    return node.path.isEmpty() || !m_options.skips.contains(node.path);
}

bool ParallelTreeWalk::isOpenAbove(const Node &folder, Key key) const
{
    auto [at, end] = m_live.equal_range(key);
    for (; at != end; ++at)
        for (const Node *above = &folder; above; above = above->parent.get())
            if (above == at->second)
                return true;
    return false;
}

std::unique_ptr<ParallelTreeWalk::Listing> ParallelTreeWalk::list(const NodePtr &node, int parentFd)
{
    auto listing = std::make_unique<Listing>();
    const int fd = node->parent ? ::openat(parentFd, node->name.constData(), openFlags | O_NOFOLLOW)
                                : ::open(node->name.constData(), openFlags | (m_followRoot ? 0 : O_NOFOLLOW));
    if (fd < 0) {
        listing->error = errno;
        return listing;
    }
    listing->fd = fd;
    std::string &names = listing->names;
    // Like readdir(), what the folder gave before an error counts, and the error not.
    readNames(fd, [&](const char *name, std::size_t length) {
        listing->entries.push_back(Listing::Name{std::uint32_t(names.size()), std::uint32_t(length)});
        names.append(name, length + 1);
    });

    const bool slash = node->name.endsWith('/') && !node->parent;
    const std::size_t count = std::min(listing->entries.size(), std::size_t(m_options.readyEntries));
    listing->examined.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (i % 4096 == 4095) {
            std::lock_guard lock(m_mutex);
            if (m_stop || node->discarded)
                break;
        }
        Listing::Examined &item = listing->examined[i];
        item.error = 0;
        item.child = -1;
        const char *name = names.data() + listing->entries[i].offset;
        const qsizetype nameLength = listing->entries[i].length;
        if (::fstatat(fd, name, &item.st, AT_SYMLINK_NOFOLLOW) != 0) {
            item.error = errno;
            continue;
        }
        if (!S_ISDIR(item.st.st_mode))
            continue;
        auto child = std::make_shared<Node>();
        child->parent = node;
        child->name = QByteArray(name, nameLength);
        child->pathLength = node->pathLength + (slash ? 0 : 1) + nameLength;
        if (child->pathLength <= m_longestSkip)
            child->path = (slash ? node->path : node->path + '/') + child->name;
        child->key = Key{item.st.st_dev, item.st.st_ino};
        child->level = node->level + 1;
        child->state = wanted(*child) ? Node::State::queued : Node::State::unwanted;
        if (m_options.probe)
            child->probe = m_options.probe(child->name, fd);
        item.child = int(listing->children.size());
        listing->children.push_back(std::move(child));
    }
    return listing;
}

void ParallelTreeWalk::publish(const NodePtr &node, std::unique_ptr<Listing> listing, bool byLister)
{
    if (node->discarded || m_stop) {
        if (listing->fd >= 0)
            ::close(listing->fd);
        return;
    }
    node->fd = std::exchange(listing->fd, -1);
    // Its name and path were for opening it and for its subfolders' paths.
    node->name = QByteArray();
    node->path = QByteArray();
    // A subfolder that is one of the folders it lies in closes a cycle: it is
    // reported and never entered, as by the reader.
    for (Listing::Examined &item : listing->examined) {
        if (item.child < 0)
            continue;
        NodePtr &child = listing->children[size_t(item.child)];
        if (isOpenAbove(*node, child->key)) {
            child.reset();
            item.child = -1;
            continue;
        }
        m_live.emplace(child->key, child.get());
        child->live = true;
    }
    int queued = 0;
    for (auto it = listing->children.rbegin(); it != listing->children.rend(); ++it)
        if (*it && (*it)->state == Node::State::queued) {
            m_stack.push_back(*it);
            ++queued;
        }
    m_readyEntries += listing->weight();
    ++m_readyCount;
    node->listing = std::move(listing);
    node->state = Node::State::ready;
    // Wake-ups are dear: the reader only for the folder it waits for, and no
    // more listers than there is new work for.
    if (node.get() == m_awaited)
        m_ready.notify_one();
    // A lister goes on with the first of them itself; the reader lists those
    // of the folder it is in.
    if (node.get() == m_readerFolder)
        queued = 0;
    for (int i = byLister ? 1 : 0; i < std::min(queued, m_idleListers + (byLister ? 1 : 0)); ++i)
        m_work.notify_one();
}

void ParallelTreeWalk::listHere(std::unique_lock<std::mutex> &lock, const NodePtr &node, bool byLister)
{
    Node *parent = node->parent.get();
    node->state = Node::State::listing;
    const int parentFd = parent ? parent->fd : -1;
    if (parent)
        ++parent->fdUsers;
    lock.unlock();
    std::unique_ptr<Listing> listing = list(node, parentFd);
    lock.lock();
    if (parent && --parent->fdUsers == 0 && parent->closeWhenFree)
        releaseDescriptor(*parent);
    publish(node, std::move(listing), byLister);
}

bool ParallelTreeWalk::listNext(std::unique_lock<std::mutex> &lock, bool byLister)
{
    if (m_readyCount >= m_options.readyFolders || m_readyEntries >= m_options.readyEntries) {
        m_windowFull = true;
        return false;
    }
    while (!m_stack.empty()) {
        const NodePtr node = std::move(m_stack.back());
        m_stack.pop_back();
        if (node->discarded || node->state != Node::State::queued)
            continue;
        if (node->parent && node->parent->fd < 0) {
            // The reader gave that descriptor up; it takes it back on its way up.
            node->state = Node::State::blocked;
            node->parent->blocked.push_back(node);
            continue;
        }
        if (byLister && node->parent.get() == m_readerFolder) {
            // The reader needs it next or soon: handing it over would cost more
            // than listing it, above all on a chain of folders one inside the other.
            m_setAside.push_back(node);
            continue;
        }
        listHere(lock, node, byLister);
        return true;
    }
    return false;
}

void ParallelTreeWalk::listerLoop()
{
    std::unique_lock lock(m_mutex);
    while (!m_stop)
        if (!listNext(lock, true)) {
            ++m_idleListers;
            m_work.wait(lock);
            --m_idleListers;
        }
}

std::unique_ptr<ParallelTreeWalk::Listing> ParallelTreeWalk::take(const NodePtr &node)
{
    std::unique_lock lock(m_mutex);
    readerIn(node.get());
    for (;;) {
        switch (node->state) {
        case Node::State::ready: {
            std::unique_ptr<Listing> listing = std::move(node->listing);
            node->state = Node::State::taken;
            --m_readyCount;
            m_readyEntries -= listing->weight();
            wakeListers();
            return listing;
        }
        case Node::State::listing:
            // A lister is at it: rather than sleep, list what comes next.
            if (listNext(lock, false))
                break;
            m_awaited = node.get();
            m_ready.wait(lock);
            m_awaited = nullptr;
            break;
        case Node::State::taken:
            return std::make_unique<Listing>(); // not reached: each folder is entered once
        case Node::State::queued:
        case Node::State::unwanted:
        case Node::State::blocked: {
            // No lister got to it: list it here, through the folder the reader is in.
            // Mostly it was the last one queued; it need not wait there for nothing.
            if (!m_stack.empty() && m_stack.back() == node)
                m_stack.pop_back();
            Node *parent = node->parent.get();
            if (parent && parent->fd < 0) {
                auto listing = std::make_unique<Listing>();
                listing->error = EBADF;
                return listing;
            }
            listHere(lock, node, false);
            break;
        }
        }
    }
}

bool ParallelTreeWalk::enterPending(Entry &entry)
{
    const NodePtr node = std::move(m_pendingNode);
    const struct stat *st = std::exchange(m_pendingSt, nullptr);
    if (m_skipPending) {
        m_skipPending = false;
        std::lock_guard lock(m_mutex);
        discard(node);
        return false;
    }
    std::unique_ptr<Listing> listing = take(node);
    if (listing->error != 0 || node->fd < 0) {
        const int error = listing->error != 0 ? listing->error : EIO;
        const qsizetype nameOffset = node->level > 0 ? m_path.lastIndexOf('/') + 1 : 0;
        entry = Entry{Kind::unreadable, node->level, m_path, QByteArrayView(m_path).sliced(nameOffset), st, error};
        std::lock_guard lock(m_mutex);
        readerIn(m_depth > 0 ? m_levels[size_t(m_depth - 1)]->node.get() : nullptr);
        discard(node);
        return true;
    }
    if (size_t(m_depth) == m_levels.size())
        m_levels.push_back(std::make_unique<Level>());
    Level &level = *m_levels[size_t(m_depth)];
    ++m_depth;
    level.node = node;
    level.listing = std::move(listing);
    level.pos = 0;
    level.pathLength = m_path.size();
    level.nameOffset = node->level > 0 ? m_path.lastIndexOf('/') + 1 : 0;
    level.level = node->level;
    level.lostError = 0;
    level.st = *st;
    level.count = level.listing->entries.size();
    m_open.insert(node->key);
    // A folder entered at its last entry has no more use for its listing: on a
    // deep chain of folders that would be a listing kept for every level.
    if (m_depth >= 2) {
        Level &above = *m_levels[size_t(m_depth - 2)];
        if (above.listing && above.pos == above.count)
            above.listing.reset();
    }
    // The reader's descriptors are held by the innermost levels only.
    if (m_depth - m_firstHeld > maxHeld) {
        Level &outer = *m_levels[size_t(m_firstHeld++)];
        std::lock_guard lock(m_mutex);
        releaseDescriptor(*outer.node);
    }
    return false;
}

void ParallelTreeWalk::popLevel()
{
    Level &top = *m_levels[size_t(m_depth - 1)];
    std::unique_lock lock(m_mutex);
    if (m_depth >= 2) {
        Level &parent = *m_levels[size_t(m_depth - 2)];
        Node &folder = *parent.node;
        if (folder.fd >= 0 && folder.closeWhenFree) {
            folder.closeWhenFree = false; // given up, but not yet closed: keep it
            m_firstHeld = m_depth - 2;
        } else if (folder.fd < 0 && !parent.lostError) {
            // It must be the very folder that was left, not one moved into its place.
            const int fd = top.node->fd >= 0 ? ::openat(top.node->fd, "..", openFlags | O_NOFOLLOW) : -1;
            struct stat st;
            if (fd >= 0 && ::fstat(fd, &st) == 0 && st.st_dev == parent.st.st_dev && st.st_ino == parent.st.st_ino) {
                folder.fd = fd;
                m_firstHeld = m_depth - 2;
                for (auto it = folder.blocked.rbegin(); it != folder.blocked.rend(); ++it) {
                    (*it)->state = Node::State::queued;
                    m_stack.push_back(*it);
                }
                if (!folder.blocked.empty() && m_idleListers > 0)
                    m_work.notify_all();
                folder.blocked.clear();
            } else {
                parent.lostError = top.node->fd < 0 ? (top.lostError ? top.lostError : ENOENT)
                                   : fd < 0         ? errno
                                                    : ENOENT;
                if (fd >= 0)
                    ::close(fd);
            }
        }
    }
    m_open.erase(top.node->key);
    if (top.listing)
        for (const NodePtr &child : top.listing->children)
            if (child)
                discard(child);
    discard(top.node);
    readerIn(m_depth >= 2 ? m_levels[size_t(m_depth - 2)]->node.get() : nullptr);
    lock.unlock();
    top.listing.reset();
    top.node.reset();
    --m_depth;
    m_firstHeld = std::min(m_firstHeld, m_depth);
}

bool ParallelTreeWalk::next(Entry &entry)
{
    if (!m_started) {
        m_started = true;
        m_path = m_root;
        entry = Entry{Kind::other, 0, m_path, m_path, &m_rootSt, 0};
        const int status =
            m_followRoot ? ::stat(m_path.constData(), &m_rootSt) : ::lstat(m_path.constData(), &m_rootSt);
        if (status != 0) {
            entry.kind = Kind::noStat;
            entry.st = nullptr;
            entry.error = errno;
        } else if (S_ISDIR(m_rootSt.st_mode)) {
            entry.kind = Kind::directory;
            auto root = std::make_shared<Node>();
            root->name = m_root;
            root->pathLength = m_root.size();
            if (root->pathLength <= m_longestSkip)
                root->path = m_root;
            root->key = Key{m_rootSt.st_dev, m_rootSt.st_ino};
            m_probed.clear();
            {
                std::lock_guard lock(m_mutex);
                m_live.emplace(root->key, root.get());
                root->live = true;
                m_stack.push_back(root);
            }
            m_pendingNode = std::move(root);
            m_pendingSt = &m_rootSt;
            startListers();
        } else if (S_ISREG(m_rootSt.st_mode)) {
            entry.kind = Kind::file;
        } else if (S_ISLNK(m_rootSt.st_mode)) {
            entry.kind = Kind::symlink;
        }
        return true;
    }

    if (m_pendingNode) {
        if (enterPending(entry))
            return true;
    }
    m_skipPending = false;

    while (m_depth > 0) {
        Level &top = *m_levels[size_t(m_depth - 1)];
        if (top.pos < top.count && !top.lostError) {
            Listing &listing = *top.listing;
            const std::size_t index = top.pos++;
            const Listing::Name &name = listing.entries[index];
            m_path.truncate(top.pathLength);
            if (!m_path.endsWith('/'))
                m_path.append('/');
            const qsizetype nameOffset = m_path.size();
            m_path.append(listing.names.data() + name.offset, qsizetype(name.length));

            // Examined by the lister, or now, past what it examined.
            int error = 0;
            int childIndex = -1;
            const struct stat *st = &m_st;
            if (index < listing.examined.size()) {
                const Listing::Examined &item = listing.examined[index];
                error = item.error;
                childIndex = item.child;
                st = &item.st;
            } else if (top.node->fd < 0) {
                error = EBADF;
            } else if (::fstatat(top.node->fd, listing.names.data() + name.offset, &m_st, AT_SYMLINK_NOFOLLOW) != 0) {
                error = errno;
            }

            entry = Entry{Kind::other, top.level + 1, m_path, QByteArrayView(m_path).sliced(nameOffset), st, 0};
            if (error != 0) {
                entry.kind = Kind::noStat;
                entry.st = nullptr;
                entry.error = error;
            } else if (S_ISREG(st->st_mode)) {
                entry.kind = Kind::file;
            } else if (S_ISDIR(st->st_mode)) {
                NodePtr child = childIndex >= 0 ? std::move(listing.children[size_t(childIndex)]) : NodePtr();
                if (!m_open.contains(Key{st->st_dev, st->st_ino})) {
                    entry.kind = Kind::directory;
                    if (!child) {
                        // Past what the lister examined, or taken for a cycle by it
                        // where the reader knows better: listed by the reader.
                        child = std::make_shared<Node>();
                        child->parent = top.node;
                        child->name = entry.name.toByteArray();
                        child->pathLength = m_path.size();
                        if (child->pathLength <= m_longestSkip)
                            child->path = m_path;
                        child->key = Key{st->st_dev, st->st_ino};
                        child->level = top.level + 1;
                        child->state = Node::State::unwanted;
                        if (m_options.probe && top.node->fd >= 0)
                            child->probe = m_options.probe(child->name, top.node->fd);
                    }
                    m_probed = std::move(child->probe);
                    m_pendingNode = std::move(child);
                    m_pendingSt = st;
                } else if (child) {
                    std::lock_guard lock(m_mutex);
                    discard(child);
                }
            } else if (S_ISLNK(st->st_mode)) {
                entry.kind = Kind::symlink;
            }
            return true;
        }

        // The folder is done, or the rest of it can't be reached.
        m_path.truncate(top.pathLength);
        const bool lost = top.pos < top.count;
        entry = Entry{lost ? Kind::unreadable : Kind::directoryDone, top.level, m_path,
                      QByteArrayView(m_path).sliced(top.nameOffset), &top.st,   lost ? top.lostError : 0};
        popLevel();
        return true;
    }
    return false;
}
