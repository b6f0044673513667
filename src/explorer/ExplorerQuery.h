// What the Space explorer's results list is searched, filtered and sorted by.
// A value owned by the model and handed to SpaceView; main thread only.

#pragma once

#include "ExplorerFilter.h"
#include "ExplorerSort.h"

#include <QString>

struct ExplorerQuery {
    QString search;
    ExplorerFilter filter;
    ExplorerSort sort;
};
