// What one row of the Space explorer's grid shows: the value of each of
// SpaceModel's roles for a tile, given the selection, layout and removal around
// it. Plain functions; main thread (they ask the queue and the safety guard).

#pragma once

#include "ExplorerLayout.h"
#include "ExplorerTile.h"

#include <QByteArray>
#include <QSet>
#include <QVariant>

class CleanQueue;

namespace TileRoles {

// What a row's values depend on besides its tile.
struct Around {
    const CleanQueue *queue = nullptr; // null without state
    ExplorerLayout layout;
    qint64 heaviest = 1;                         // largest size among the rows, at least 1
    qint64 total = 0;                            // size of the folder shown, 0 when unknown
    const QSet<QByteArray> *vanishing = nullptr; // paths a running removal is taking
    bool waiting = false;                        // a scan is running
};

// The value of `role` (a SpaceModel::Role) for `tile`; null for other roles.
QVariant value(const ExplorerTile &tile, int role, const Around &around);

// Kept whole by the safety guard: protected, and not a folder whose contents
// may go.
bool isLocked(const QByteArray &id);

} // namespace TileRoles
