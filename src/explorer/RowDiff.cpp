#include "RowDiff.h"

#include <QHashFunctions>
#include <QSet>
#include <QString>

namespace {

// Runs of neighbouring numbers, as (first, last).
QList<std::pair<int, int>> runs(const QList<int> &rows)
{
    QList<std::pair<int, int>> out;
    for (qsizetype i = 0; i < rows.size();) {
        qsizetype j = i;
        while (j + 1 < rows.size() && rows[j + 1] == rows[j] + 1)
            ++j;
        out.append({rows[i], rows[j]});
        i = j + 1;
    }
    return out;
}

} // namespace

RowDiff RowDiff::between(const QList<QByteArray> &oldIds, const QList<size_t> &oldSigs, const QList<QByteArray> &newIds,
                         const QList<size_t> &newSigs, bool allChanged)
{
    RowDiff diff;
    const auto isPlaceholderId = [](const QByteArray &id) { return id.startsWith("placeholder-"); };
    qsizetype lead = 0;
    while (lead < newIds.size() && lead < oldIds.size() &&
           (newIds[lead] == oldIds[lead] || isPlaceholderId(newIds[lead]) || isPlaceholderId(oldIds[lead])))
        ++lead;

    // After the leading rows: if the old rows that follow either stay in
    // their order or are gone (what a removal does), only the gone ones go.
    QList<int> kept; // old row of each staying row after the lead
    QList<int> gone;
    if (lead < oldIds.size()) {
        const QSet<QByteArray> remaining(newIds.begin() + lead, newIds.end());
        qsizetype j = lead;
        for (qsizetype i = lead; i < oldIds.size(); ++i) {
            if (j < newIds.size() && oldIds[i] == newIds[j]) {
                kept.append(int(i));
                ++j;
            } else if (!remaining.contains(oldIds[i])) {
                gone.append(int(i));
            } else {
                kept.clear();
                gone.clear();
                break;
            }
        }
        if (gone.isEmpty()) {
            kept.clear();
            for (qsizetype i = lead; i < oldIds.size(); ++i)
                gone.append(int(i));
        }
    }
    diff.removed = runs(gone);
    diff.same = lead + kept.size();

    QList<int> changed;
    for (qsizetype i = 0; i < diff.same; ++i) {
        const size_t before = i < lead ? oldSigs[i] : oldSigs[kept[i - lead]];
        if (allChanged || newSigs[i] != before)
            changed.append(int(i));
    }
    diff.changed = runs(changed);
    return diff;
}

size_t RowDiff::signature(const ExplorerTile &tile)
{
    const ExplorerEntry *e = tile.entry();
    return qHashMulti(0, tile.id(), int(tile.condition), e ? e->size : -1, e && e->measuring,
                      e ? e->risk.title : QString(), e ? e->unreadableBelow : 0);
}
