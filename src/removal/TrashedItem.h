// One item a removal moved to a Trash: where it came from, where it lies now
// and what it was. Enough to put it back. A value; any thread.

#pragma once

#include "ItemIdentity.h"

#include <QByteArray>

struct TrashedItem {
    QByteArray original;   // the real place it was moved from (resolved folder + name), exact bytes
    QByteArray named;      // the path the removal was given for it; differs from `original` behind a link
    QByteArray trashedAs;  // TRASH/files/NAME
    QByteArray infoFile;   // TRASH/info/NAME.trashinfo; empty where the platform keeps no such file
    ItemIdentity identity; // as it was right before the move
    qint64 size = 0;       // bytes on disk it holds, as measured for the removal
    friend bool operator==(const TrashedItem &, const TrashedItem &) = default;
};
