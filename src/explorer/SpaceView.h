// The tile lists of the Space explorer (welcome, discovering, results) and the
// rules that mark, filter and sort them. Plain functions without state of their
// own; called on the main thread.

#pragma once

#include "ExplorerEntry.h"
#include "ExplorerQuery.h"
#include "ExplorerTile.h"
#include "TileList.h"
#include "TileMemo.h"

#include "core/ScanProgress.h"
#include "core/ScanResult.h"

#include <QHash>
#include <QList>

class CleanQueue;

// The tile lists of the Space explorer, as plain functions over the model. The
// results list is memoised: asking again under the same key costs seven field
// comparisons.
namespace SpaceView {

enum class Mode : quint8 { welcome, discovering, results };
Mode mode(bool isScanning, const ScanResultPtr &result);
QString modeName(Mode mode); // "welcome", "discovering", "results"

// Grime: safe; normal artefacts and cache-named folders; normal or caution disk
// images. Danger and locked never are.
bool isGrime(const ExplorerEntry &entry);

// Tiles for `entries` in the same order, with their conditions: grime is
// stained; of the rest, entries of at least 1 GB and 15 % of `total` that are
// not measuring are candidates for bloated, and the three largest are.
QList<ExplorerTile> mark(const QList<ExplorerEntry> &entries, qint64 total);
QList<ExplorerTile> mark(QList<ExplorerEntry> &&entries, qint64 total);

// The 24 tiles of the welcome picture.
QList<ExplorerTile> welcomeTiles();

// The scan's live list followed by waiting placeholders: filled up to 24 while
// fewer than 20 are found, then always four more.
// `risks`, if given, keeps each path's verdict between calls of one scan.
QList<ExplorerTile> discoveringTiles(const ScanProgress &progress, QHash<QByteArray, Risk> *risks = nullptr);

// Search (case-insensitive, as typed, on the name only) and filter; a
// placeholder never matches.
bool matches(const ExplorerTile &tile, const ExplorerQuery &query, const CleanQueue &queue);

// The hash of the queue's ids in order; what the `selected` filter keys on.
size_t selectionHash(const CleanQueue &queue);

TileKey key(const DirNode *node, int revision, const ExplorerQuery &query, const CleanQueue &queue, int small);

// The tiles of a folder (see TileList::ofFolder). Answered from `memo` when the
// key is the same.
const TileList &resultTiles(const DirNodePtr &current, int revision, const QList<ExplorerEntry> &small,
                            const ExplorerQuery &query, const CleanQueue &queue, TileMemo &memo);

// Seed of an id: 0...996, stable within one run.
int seed(const QByteArray &id);

} // namespace SpaceView
