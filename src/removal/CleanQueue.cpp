#include "CleanQueue.h"

#include "core/Paths.h"

namespace {

bool covers(const CleanItem &item)
{
    return item.kind == CleanItem::Kind::folder || item.kind == CleanItem::Kind::artifact;
}

QByteArray key(QByteArrayView id) { return Paths::comparable(id); }

} // namespace

CleanQueue::CleanQueue(QObject *parent) : QObject(parent) {}

qint64 CleanQueue::totalSize() const
{
    qint64 sum = 0;
    for (const CleanItem &item : m_items)
        sum += item.size;
    return sum;
}

bool CleanQueue::contains(QByteArrayView id) const { return m_ids.contains(key(id)); }

bool CleanQueue::isCovered(QByteArrayView path) const
{
    if (m_coveringIds.isEmpty() || path.startsWith(CleanItem::junkPrefix))
        return false;
    // Every proper prefix ending before a "/" is a candidate folder.
    const QByteArray k = key(path);
    for (qsizetype slash = k.indexOf('/', 1); slash > 0; slash = k.indexOf('/', slash + 1)) {
        if (m_coveringIds.contains(k.first(slash)))
            return true;
    }
    // A folder id that itself ends in "/" (the root) covers everything below it.
    return k.size() > 1 && m_coveringIds.contains(QByteArrayLiteral("/"));
}

std::optional<CleanItem> CleanQueue::covering(QByteArrayView path) const
{
    if (!isCovered(path))
        return std::nullopt;
    for (const CleanItem &item : m_items) {
        if (covers(item) && Paths::isBelow(path, item.id))
            return item;
    }
    return std::nullopt;
}

bool CleanQueue::includes(QByteArrayView path) const { return contains(path) || isCovered(path); }

bool CleanQueue::addOne(const CleanItem &item)
{
    const QByteArray k = key(item.id);
    if (m_ids.contains(k))
        return false;
    if (!item.isJunk() && isCovered(item.id))
        return false;

    if (!item.isJunk()) {
        // Swallow queued children: every path id that starts with id + "/".
        QByteArray prefix = k;
        if (!prefix.endsWith('/'))
            prefix += '/';
        QSet<QByteArray> swallowed;
        for (auto it = m_pathIds.lower_bound(prefix); it != m_pathIds.end() && (*it).startsWith(prefix);) {
            swallowed.insert((*it));
            m_ids.remove((*it));
            m_coveringIds.remove((*it));
            it = m_pathIds.erase(it);
        }
        if (!swallowed.isEmpty()) {
            m_items.removeIf(
                [&](const CleanItem &queued) { return !queued.isJunk() && swallowed.contains(key(queued.id)); });
        }
        m_pathIds.insert(k);
        if (covers(item))
            m_coveringIds.insert(k);
    }
    m_ids.insert(k);
    m_items.append(item);
    return true;
}

void CleanQueue::add(const CleanItem &item)
{
    if (addOne(item))
        emit itemsChanged();
}

void CleanQueue::add(const QList<CleanItem> &items)
{
    bool changed = false;
    for (const CleanItem &item : items)
        changed = addOne(item) || changed;
    if (changed)
        emit itemsChanged();
}

void CleanQueue::rebuildIndex()
{
    m_ids.clear();
    m_coveringIds.clear();
    m_pathIds.clear();
    for (const CleanItem &item : m_items) {
        const QByteArray k = key(item.id);
        m_ids.insert(k);
        if (!item.isJunk()) {
            m_pathIds.insert(k);
            if (covers(item))
                m_coveringIds.insert(k);
        }
    }
}

void CleanQueue::remove(QByteArrayView id)
{
    const QByteArray k = key(id);
    if (!m_ids.contains(k))
        return;
    m_items.removeIf([&](const CleanItem &item) { return key(item.id) == k; });
    rebuildIndex();
    emit itemsChanged();
}

void CleanQueue::clear()
{
    if (m_items.isEmpty())
        return;
    m_items.clear();
    rebuildIndex();
    emit itemsChanged();
}

void CleanQueue::removeEvaporated(const QSet<QByteArray> &paths, const QSet<QByteArray> &cleared)
{
    if (paths.isEmpty() && cleared.isEmpty())
        return;
    const qsizetype removed =
        m_items.removeIf([&](const CleanItem &item) { return paths.contains(item.id) || cleared.contains(item.id); });
    if (removed == 0)
        return;
    rebuildIndex();
    emit itemsChanged();
}

QList<CleanQueue::SourceSummary> CleanQueue::bySource() const
{
    QList<SourceSummary> out;
    for (auto source : CleanItem::Source::allCases) {
        SourceSummary summary{source};
        for (const CleanItem &item : m_items) {
            if (item.source == source) {
                ++summary.count;
                summary.size += item.size;
            }
        }
        if (summary.count > 0)
            out.append(summary);
    }
    return out;
}
