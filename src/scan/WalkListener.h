// Something that sees a scan's walk as the scanner takes it, such as a writer
// of the whole tree to a file. Called on the scanning thread.

#pragma once

#include "TreeWalk.h"

class WalkListener
{
public:
    virtual ~WalkListener() = default;
    // Each event of the walk, in order. `leftOut`: a folder or file the scan
    // leaves out by its options (hidden names, excluded folders); nothing of
    // such a folder's contents follows.
    virtual void seen(const TreeWalk::Entry &entry, bool leftOut) = 0;
};
