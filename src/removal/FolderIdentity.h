// A folder as it was seen when a removal was reviewed: device and inode. A
// value; any thread.

#pragma once

#include <QtGlobal>

struct FolderIdentity {
    quint64 device = 0;
    quint64 inode = 0;
    friend bool operator==(const FolderIdentity &, const FolderIdentity &) = default;
};
