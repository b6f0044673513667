// The last tile list of the Space explorer's results and the key it was made
// under, so that asking again under the same key costs a comparison. Owned by
// the model; main thread only.

#pragma once

#include "ExplorerFilter.h"
#include "ExplorerSort.h"
#include "TileList.h"

#include "core/DirNode.h"

#include <QString>

#include <optional>

// What a memoised tile list was made from. `selection` is 0 unless the filter
// is `selected`; `small` counts the loose small files held for the folder.
struct TileKey {
    const DirNode *node = nullptr;
    int revision = 0;
    QString search;
    ExplorerFilter filter;
    ExplorerSort sort;
    size_t selection = 0;
    int small = 0;

    friend bool operator==(const TileKey &a, const TileKey &b)
    {
        return a.node == b.node && a.revision == b.revision && a.search == b.search && a.filter == b.filter &&
               a.sort == b.sort && a.selection == b.selection && a.small == b.small;
    }
};

// Only ever overwritten, never cleared.
class TileMemo
{
public:
    std::optional<TileKey> key;
    TileList tiles;
    int builds = 0; // how many times a list was built; for tests and benchmarks
};
