#include "Removal.h"

#include "core/Paths.h"
#include "safety/SafetyGuard.h"
#include "scan/DiskScanner.h"

#include <QSet>

#include <algorithm>
#include <cerrno>

#include <dirent.h>
#include <fts.h>
#include <sys/stat.h>

namespace {

bool isFolder(const QByteArray &path)
{
    struct stat st {};
    return ::lstat(path.constData(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool isGone(const QByteArray &path)
{
    struct stat st {};
    return ::lstat(path.constData(), &st) != 0 && errno == ENOENT;
}

class Worker
{
public:
    Worker(bool permanently, FileOperations &operations, const SafetyProfile &profile)
        : m_permanently(permanently), m_operations(operations), m_profile(profile)
    {}

    void take(const DeletionItem &item)
    {
        const qint64 size = item.size ? *item.size : Removal::measure(DiskScanner::normalize(item.path));
        const int error = remove(item.path);
        if (error == 0)
            m_outcome.freed.insert(item.path, size);
        else if (item.clearInsideOnFailure && isFolder(item.path))
            clearInside(item.path, 0);
        else
            fail(item.path, error);
    }

    Removal::Outcome outcome() && { return std::move(m_outcome); }

private:
    int remove(const QByteArray &path)
    {
        return m_permanently ? m_operations.removePermanently(path) : m_operations.moveToTrash(path);
    }

    void clearInside(const QByteArray &path, int depth)
    {
        for (const QByteArray &name : Removal::listNames(path)) {
            const QByteArray child = Paths::join(path, name);
            // Each child is an item of its own now, and meets the guard.
            const QByteArray normalized = m_profile.normalize(child);
            if (SafetyGuard::isProtected(normalized, m_profile)) {
                m_outcome.failures.append(
                    {child, DeletionFailure::Reason::safetyGuard, SafetyGuard::reason(normalized, m_profile)});
                continue;
            }
            const qint64 size = Removal::measure(normalized);
            const int error = remove(child);
            if (error == 0)
                m_outcome.freed.insert(child, size);
            else if (depth <= 3 && isFolder(child))
                clearInside(child, depth + 1);
            else
                fail(child, error);
        }
    }

    void fail(const QByteArray &path, int error)
    {
        // Gone before we came: removed, with nothing freed.
        if (error == ENOENT && isGone(path)) {
            m_outcome.freed.insert(path, 0);
            return;
        }
        m_outcome.failures.append({path, DeletionFailure::classify(error), FileOperations::describe(error)});
    }

    bool m_permanently;
    FileOperations &m_operations;
    const SafetyProfile &m_profile;
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

Outcome run(const QList<DeletionItem> &items, bool permanently, FileOperations &operations,
            const SafetyProfile &profile)
{
    Worker worker(permanently, operations, profile);
    for (const DeletionItem &item : items)
        worker.take(item);
    return std::move(worker).outcome();
}

qint64 measure(const QByteArray &path)
{
    struct stat st {};
    if (::lstat(path.constData(), &st) != 0)
        return 0;
    if (!S_ISDIR(st.st_mode))
        return qint64(st.st_blocks) * 512;

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
        total += qint64(s->st_blocks) * 512;
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

double minimumShowTime(qsizetype count) { return std::clamp(double(count) * 0.55 + 0.9, 1.0, 8.0); }

} // namespace Removal
