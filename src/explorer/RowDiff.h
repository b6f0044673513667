// How the rows a view holds give way to a new list: which leading rows stay in
// place and which of them show something new. Plain values and functions; the
// model computes and applies them on the main thread.

#pragma once

#include "ExplorerTile.h"

#include <QByteArray>
#include <QList>

#include <utility>

struct RowDiff {
    qsizetype same = 0;                 // leading rows that stay; the rest is replaced
    QList<std::pair<int, int>> changed; // runs of neighbouring staying rows (first, last) to repaint

    // A row stays while its id is the same, or while a placeholder stands on
    // either side (a placeholder that gives way to an entry, or the other way
    // round, changes in place). A staying row changed when its signature did,
    // or always with `allChanged`.
    static RowDiff between(const QList<QByteArray> &oldIds, const QList<size_t> &oldSigs,
                           const QList<QByteArray> &newIds, const QList<size_t> &newSigs, bool allChanged);

    // What a row shows that can change without its id changing.
    static size_t signature(const ExplorerTile &tile);
};
