// How the rows a view holds give way to a new list: which leading rows stay in
// place and which of them show something new. Plain values and functions; the
// model computes and applies them on the main thread.

#pragma once

#include "ExplorerTile.h"

#include <QByteArray>
#include <QList>

#include <utility>

struct RowDiff {
    // Applied in this order: the `removed` runs of old rows (first, last) go,
    // the rows left are the first `same` rows of the new list, and the new
    // rows after them are inserted; `changed` runs among the staying rows are
    // repainted.
    qsizetype same = 0;
    QList<std::pair<int, int>> removed;
    QList<std::pair<int, int>> changed;

    // A row stays while its id is the same, or while a placeholder stands on
    // either side (a placeholder that gives way to an entry, or the other way
    // round, changes in place). Past the first difference the rows stay too
    // when all the old rows there either keep their order or are gone, as
    // after a removal, so the view can close the gaps; otherwise all of them
    // are replaced. A staying row changed when its signature did, or always
    // with `allChanged`.
    static RowDiff between(const QList<QByteArray> &oldIds, const QList<size_t> &oldSigs,
                           const QList<QByteArray> &newIds, const QList<size_t> &newSigs, bool allChanged);

    // What a row shows that can change without its id changing.
    static size_t signature(const ExplorerTile &tile);
};
