// The one selection of the application: items picked in any area, in the order
// they were added, kept free of overlaps. Lives on the main thread.

#pragma once

#include "CleanItem.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>

#include <optional>
#include <set>

// Lives on the main thread; every change emits itemsChanged().
//
// Lookups are by hash and by a sorted index of the path ids, so adding many
// thousands of items one by one stays fast. Paths compare under canonical
// Unicode equivalence, like everywhere else.
// A queued folder (or artefact) covers everything below it, so nothing below it
// is stored; adding a folder swallows its queued children whatever area they
// came from. Junk items ("junk:" ids) are not paths and neither cover nor are
// covered.
class CleanQueue : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY itemsChanged)
    Q_PROPERTY(qint64 totalSize READ totalSize NOTIFY itemsChanged)

public:
    struct SourceSummary {
        CleanItem::Source source;
        int count = 0;
        qint64 size = 0;
        friend bool operator==(const SourceSummary &, const SourceSummary &) = default;
    };

    explicit CleanQueue(QObject *parent = nullptr);

    const QList<CleanItem> &items() const { return m_items; }
    int count() const { return int(m_items.size()); }
    bool isEmpty() const { return m_items.isEmpty(); }
    qint64 totalSize() const;

    // True if an item has exactly this id.
    bool contains(QByteArrayView id) const;
    // The queued folder or artefact that `path` lies strictly below, if any.
    std::optional<CleanItem> covering(QByteArrayView path) const;
    // contains() or covered: what a row asks to show itself as selected.
    bool includes(QByteArrayView path) const;

    void add(const CleanItem &item);
    void add(const QList<CleanItem> &items);
    // Drops the item with exactly this id; never reaches below it.
    void remove(QByteArrayView id);
    void clear();
    // Drops every item whose id is in either set (after a removal).
    void removeEvaporated(const QSet<QByteArray> &paths, const QSet<QByteArray> &cleared);

    // Per source, in the order space, files, deepClean; sources without items
    // are left out.
    QList<SourceSummary> bySource() const;

signals:
    void itemsChanged();

private:
    bool addOne(const CleanItem &item);
    void rebuildIndex();
    bool isCovered(QByteArrayView path) const;

    QList<CleanItem> m_items;
    // Comparable form of every id.
    QSet<QByteArray> m_ids;
    // Comparable form of each queued folder or artefact.
    QSet<QByteArray> m_coveringIds;
    // Comparable form of every non-junk id, sorted, to find children by range.
    std::set<QByteArray> m_pathIds;
};
