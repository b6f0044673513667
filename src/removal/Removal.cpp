#include "Removal.h"

#include "core/AllocatedSize.h"
#include "core/Paths.h"
#include "core/RealPlace.h"
#include "safety/SafetyGuard.h"

#include <QCoreApplication>
#include <QSet>

#include <algorithm>
#include <cerrno>

#include <dirent.h>
#include <fcntl.h>
#include <fts.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QString tr(const char *text) { return QCoreApplication::translate("Removal", text); }

bool isFolder(const RealPlace &place)
{
    struct stat st {};
    return place.statItem(st) == 0 && S_ISDIR(st.st_mode);
}

// The failure of an errno, in words where the system's would mislead.
QString describe(int error)
{
    switch (error) {
    case EXDEV:
        return tr("Another volume is mounted inside it; nothing on that volume was touched");
    case ESTALE:
        return tr("It changed on disk after the review (a folder on its way was moved or replaced), so it was left "
                  "alone");
    default:
        return FileOperations::describe(error);
    }
}

class Worker
{
public:
    Worker(bool permanently, FileOperations &operations, const Removal::Options &options)
        : m_permanently(permanently), m_operations(operations), m_options(options)
    {}

    void take(const DeletionItem &item)
    {
        const RealPlace place = RealPlace::open(item.path);
        if (refused(item.path, place))
            return;
        if (changed(item.path, place))
            return;
        const qint64 size = item.size ? *item.size : Removal::measure(place.isValid() ? place.path() : item.path);
        const int error = place.isValid() ? remove(place, size) : place.error();
        if (error == 0)
            m_outcome.freed.insert(item.path, size);
        else if (item.clearInsideOnFailure && isFolder(place) && !place.isMountPoint())
            clearInside(item.path, place, 0);
        else
            fail(item.path, place, error);
    }

    void skip() { ++m_outcome.notReached; }

    Removal::Outcome outcome() && { return std::move(m_outcome); }

private:
    int remove(const RealPlace &place, qint64 size)
    {
        if (m_permanently)
            return m_operations.removePermanently(place);
        struct stat st {};
        const bool looked = place.statItem(st) == 0;
        TrashedItem trashed;
        const int error = m_operations.moveToTrash(place, &trashed);
        if (error == 0 && looked) {
            trashed.original = place.path();
            trashed.identity = ItemIdentity::of(st);
            trashed.size = size;
            if (m_options.trashed)
                m_options.trashed(trashed);
            m_outcome.trashed.append(trashed);
        }
        return error;
    }

    // The guard's last word on the path's text and on the place it leads to.
    bool refused(const QByteArray &path, const RealPlace &place)
    {
        const SafetyGuard::Verdict verdict = SafetyGuard::lastWord(path, place, m_options.profile);
        if (!verdict.refused())
            return false;
        m_outcome.failures.append({path, DeletionFailure::Reason::safetyGuard, verdict.reason});
        return true;
    }

    // Whether the item is no longer the one reviewed: its folder replaced, or
    // the item itself replaced, modified, grown or turned into a link.
    bool changed(const QByteArray &path, const RealPlace &place)
    {
        const auto seen = m_options.reviewed.constFind(path);
        if (seen == m_options.reviewed.cend() || !place.isValid())
            return false;
        const FolderIdentity folder{quint64(place.parentStat().st_dev), quint64(place.parentStat().st_ino)};
        if (folder != seen->folder) {
            m_outcome.failures.append(
                {path, DeletionFailure::Reason::changedSinceReview, tr("The folder it was in was moved or replaced")});
            return true;
        }
        struct stat st {};
        if (!seen->item || place.statItem(st) != 0)
            return false; // gone, or not there at the review: reported as gone
        const ItemIdentity now = ItemIdentity::of(st);
        const ItemIdentity::Change change = seen->item->changeTo(now);
        if (change == ItemIdentity::Change::none)
            return false;
        m_outcome.failures.append(
            {path, DeletionFailure::Reason::changedSinceReview, ItemIdentity::describe(change, *seen->item, now)});
        return true;
    }

    void clearInside(const QByteArray &path, const RealPlace &folder, int depth)
    {
        for (const QByteArray &name : folder.listNames()) {
            const QByteArray child = Paths::join(path, name);
            // Each child is an item of its own now, and meets the guard.
            const RealPlace place = folder.child(name);
            if (refused(child, place))
                continue;
            const qint64 size = Removal::measure(place.isValid() ? place.path() : child);
            const int error = place.isValid() ? remove(place, size) : place.error();
            if (error == 0)
                m_outcome.freed.insert(child, size);
            else if (depth <= 3 && isFolder(place) && !place.isMountPoint())
                clearInside(child, place, depth + 1);
            else
                fail(child, place, error);
        }
    }

    void fail(const QByteArray &path, const RealPlace &place, int error)
    {
        // Gone before we came: removed, with nothing freed.
        struct stat st {};
        if (error == ENOENT && (!place.isValid() || place.statItem(st) == ENOENT)) {
            m_outcome.freed.insert(path, 0);
            return;
        }
        m_outcome.failures.append({path, DeletionFailure::classify(error), describe(error)});
    }

    bool m_permanently;
    FileOperations &m_operations;
    const Removal::Options &m_options;
    Removal::Outcome m_outcome;
};

struct InodeKey {
    dev_t dev;
    ino_t ino;
    friend bool operator==(const InodeKey &, const InodeKey &) = default;
};

size_t qHash(const InodeKey &key, size_t seed = 0) { return qHashMulti(seed, quint64(key.dev), quint64(key.ino)); }

} // namespace

namespace Removal {

Outcome run(const QList<DeletionItem> &items, bool permanently, FileOperations &operations, const Options &options)
{
    Worker worker(permanently, operations, options);
    for (qsizetype i = 0; i < items.size(); ++i) {
        if (options.token && options.token->isCancelled()) {
            worker.skip();
            continue;
        }
        if (options.progress)
            options.progress(i, items.size(), items.at(i).path);
        worker.take(items.at(i));
    }
    return std::move(worker).outcome();
}

Outcome run(const QList<DeletionItem> &items, bool permanently, FileOperations &operations,
            const SafetyProfile &profile)
{
    Options options;
    options.profile = profile;
    return run(items, permanently, operations, options);
}

qint64 measure(const QByteArray &path)
{
    struct stat st {};
    if (::lstat(path.constData(), &st) != 0)
        return 0;
    if (!S_ISDIR(st.st_mode))
        return allocatedSize(st);

    QByteArray copy = path;
    char *roots[] = {copy.data(), nullptr};
    FTS *fts = ::fts_open(roots, FTS_PHYSICAL | FTS_NOCHDIR, nullptr);
    if (!fts)
        return 0;
    qint64 total = 0;
    QSet<InodeKey> seen;
    while (FTSENT *entry = ::fts_read(fts)) {
        if (entry->fts_info != FTS_F)
            continue;
        const struct stat *s = entry->fts_statp;
        if (s->st_nlink > 1) {
            const InodeKey key{s->st_dev, s->st_ino};
            if (seen.contains(key))
                continue;
            seen.insert(key);
        }
        total += allocatedSize(*s);
    }
    ::fts_close(fts);
    return total;
}

QByteArrayList listNames(const QByteArray &dir, bool *ok)
{
    QByteArrayList names;
    DIR *d = ::opendir(dir.constData());
    if (ok)
        *ok = d != nullptr;
    if (!d)
        return names;
    while (const dirent *entry = ::readdir(d)) {
        const QByteArray name(entry->d_name);
        if (name != "." && name != "..")
            names.append(name);
    }
    ::closedir(d);
    return names;
}

ReviewedItems review(const QList<DeletionItem> &items)
{
    ReviewedItems reviewed;
    for (const DeletionItem &item : items) {
        const RealPlace place = RealPlace::open(item.path);
        if (!place.isValid())
            continue;
        ReviewedItem entry{{quint64(place.parentStat().st_dev), quint64(place.parentStat().st_ino)}, std::nullopt};
        struct stat st {};
        if (place.statItem(st) == 0)
            entry.item = ItemIdentity::of(st);
        reviewed.insert(item.path, entry);
    }
    return reviewed;
}

double minimumShowTime(qsizetype count) { return std::clamp(double(count) * 0.55 + 0.9, 1.0, 8.0); }

} // namespace Removal
