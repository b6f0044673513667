// A folder as it was seen when a removal was reviewed (device and inode), and
// the map from each item to the folder it lay in. Values; any thread.

#pragma once

#include <QByteArray>
#include <QHash>

struct FolderIdentity {
    quint64 device = 0;
    quint64 inode = 0;
    friend bool operator==(const FolderIdentity &, const FolderIdentity &) = default;
};
// Item path -> the real folder it lay in at the review.
using ReviewedFolders = QHash<QByteArray, FolderIdentity>;
