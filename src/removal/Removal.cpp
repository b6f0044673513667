#include "Removal.h"

#include "core/AllocatedSize.h"
#include "core/Paths.h"
#include "core/RealPlace.h"
#include "safety/SafetyGuard.h"

#include <QCoreApplication>
#include <QSet>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <optional>

#include <dirent.h>
#include <fcntl.h>
#include <fts.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
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
        const int error = place.isValid() ? remove(item.path, place, size) : place.error();
        if (error == 0)
            went(item.path, place, size);
        else if (item.clearInsideOnFailure && isFolder(place) && !place.isMountPoint())
            clearInside(item.path, place, 0);
        else
            fail(item.path, place, error, size);
    }

    void skip() { ++m_outcome.notReached; }

    Removal::Outcome outcome() && { return std::move(m_outcome); }
    // Bytes that went, by the device of the folders they went from.
    const QHash<quint64, qint64> &expectedByVolume() const { return m_expected; }

private:
    void went(const QByteArray &path, const RealPlace &place, qint64 size)
    {
        m_outcome.freed.insert(path, size);
        m_expected[quint64(place.parentStat().st_dev)] += size;
    }

    int remove(const QByteArray &path, const RealPlace &place, qint64 size)
    {
        if (m_permanently)
            return m_operations.removePermanently(place);
        struct stat st {};
        const bool looked = place.statItem(st) == 0;
        TrashedItem trashed;
        trashed.size = size;
        const int error = m_operations.moveToTrash(place, &trashed);
        if (error == 0 && looked) {
            trashed.original = place.path();
            trashed.named = path;
            trashed.identity = ItemIdentity::of(st);
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
            const int error = place.isValid() ? remove(child, place, size) : place.error();
            if (error == 0)
                went(child, place, size);
            else if (depth <= 3 && isFolder(place) && !place.isMountPoint())
                clearInside(child, place, depth + 1);
            else
                fail(child, place, error, size);
        }
    }

    void fail(const QByteArray &path, const RealPlace &place, int error, qint64 sizeBefore = 0)
    {
        // Gone before we came: removed, with nothing freed.
        struct stat st {};
        if (error == ENOENT && (!place.isValid() || place.statItem(st) == ENOENT)) {
            m_outcome.freed.insert(path, 0);
            return;
        }
        m_outcome.failures.append({path, DeletionFailure::classify(error), describe(error)});
        // A folder removed for good goes from the inside out: part of it may
        // have gone before the failure. What the folder holds now tells how much.
        if (m_permanently && place.isValid() && isFolder(place)) {
            const qint64 left = Removal::measure(place.path());
            if (left < sizeBefore) {
                m_outcome.partlyGone.insert(path, sizeBefore - left);
                m_expected[quint64(place.parentStat().st_dev)] += sizeBefore - left;
            }
        }
    }

    bool m_permanently;
    FileOperations &m_operations;
    const Removal::Options &m_options;
    Removal::Outcome m_outcome;
    QHash<quint64, qint64> m_expected;
};

// The free space of each volume a permanent removal touches, before and after.
class VolumeWatch
{
public:
    explicit VolumeWatch(const QList<DeletionItem> &items)
    {
        QSet<QByteArray> folders;
        for (const DeletionItem &item : items) {
            const QByteArray folder = Paths::parentOf(item.path);
            if (folder.isEmpty() || folders.contains(folder))
                continue;
            folders.insert(folder);
            struct stat st {};
            if (::stat(folder.constData(), &st) != 0 || m_volumes.contains(quint64(st.st_dev)))
                continue;
            m_volumes.insert(quint64(st.st_dev), {folder, Removal::freeBytes(folder)});
        }
    }

    qint64 freed(const QHash<quint64, qint64> &expected) const
    {
        qint64 total = 0;
        for (auto it = expected.cbegin(); it != expected.cend(); ++it) {
            const auto volume = m_volumes.constFind(it.key());
            if (volume == m_volumes.cend())
                total += it.value();
            else
                total += Removal::spaceCameFree(volume->before, Removal::freeBytes(volume->folder), it.value());
        }
        return total;
    }

private:
    struct Volume {
        QByteArray folder;
        qint64 before;
    };
    QHash<quint64, Volume> m_volumes;
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
    const std::optional<VolumeWatch> volumes =
        permanently ? std::optional<VolumeWatch>(VolumeWatch(items)) : std::nullopt;
    for (qsizetype i = 0; i < items.size(); ++i) {
        if (options.token && options.token->isCancelled()) {
            worker.skip();
            continue;
        }
        if (options.progress)
            options.progress(i, items.size(), items.at(i).path);
        worker.take(items.at(i));
    }
    const qint64 spaceFreed = volumes ? volumes->freed(worker.expectedByVolume()) : 0;
    Outcome outcome = std::move(worker).outcome();
    outcome.spaceFreed = spaceFreed;
    return outcome;
}

qint64 spaceCameFree(qint64 before, qint64 after, qint64 expected)
{
    // Everything else on the volume moves its free space too (downloads, logs,
    // a copy-on-write file system that frees later). Within the expected figure
    // the measurement is the truth; by that much or more, something else moved
    // it and the expected figure stands in.
    if (before < 0 || after < 0)
        return expected;
    const qint64 measured = after - before;
    return std::abs(measured - expected) >= expected ? expected : measured;
}

qint64 freeBytes(const QByteArray &path)
{
    QByteArray at = path;
    while (!at.isEmpty()) {
        struct statvfs vfs {};
        if (::statvfs(at.constData(), &vfs) == 0)
            return qint64(vfs.f_bavail) * qint64(vfs.f_frsize);
        const QByteArray up = Paths::parentOf(at);
        if (up == at)
            break;
        at = up;
    }
    return -1;
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
