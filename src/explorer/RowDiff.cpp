#include "RowDiff.h"

#include <QHashFunctions>
#include <QString>

RowDiff RowDiff::between(const QList<QByteArray> &oldIds, const QList<size_t> &oldSigs, const QList<QByteArray> &newIds,
                         const QList<size_t> &newSigs, bool allChanged)
{
    RowDiff diff;
    const auto isPlaceholderId = [](const QByteArray &id) { return id.startsWith("placeholder-"); };
    qsizetype &same = diff.same;
    while (same < newIds.size() && same < oldIds.size() &&
           (newIds[same] == oldIds[same] || isPlaceholderId(newIds[same]) || isPlaceholderId(oldIds[same])))
        ++same;
    QList<int> changed;
    for (qsizetype i = 0; i < same; ++i)
        if (allChanged || newSigs[i] != oldSigs[i])
            changed.append(int(i));
    for (qsizetype i = 0; i < changed.size();) {
        qsizetype j = i;
        while (j + 1 < changed.size() && changed[j + 1] == changed[j] + 1)
            ++j;
        diff.changed.append({changed[i], changed[j]});
        i = j + 1;
    }
    return diff;
}

size_t RowDiff::signature(const ExplorerTile &tile)
{
    const ExplorerEntry *e = tile.entry();
    return qHashMulti(0, tile.id(), int(tile.condition), e ? e->size : -1, e && e->measuring,
                      e ? e->risk.title : QString(), e ? e->unreadableBelow : 0);
}
