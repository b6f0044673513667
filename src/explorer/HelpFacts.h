// What a tile's tooltip needs to know besides its entry: the tile's condition,
// the layout, the safety guard's verdict and the selection around it. A value
// filled by the model on the main thread for TileText::helpLines.

#pragma once

#include "ExplorerLayout.h"
#include "ExplorerTile.h"

#include <QString>

struct HelpFacts {
    ExplorerTile::Condition condition = ExplorerTile::Condition::clean;
    ExplorerLayout layout;
    bool isProtected = false;    // by the safety guard
    bool isContentsOnly = false; // a folder whose contents may go
    QString protectedReason;     // the guard's sentence
    bool includes = false;       // queued itself or covered
    bool inQueue = false;        // queued itself
    QString coveringName;        // the selected folder that covers it, if any
};
