// Snapshot published while a scan runs: counts so far, the path being read and
// the root's children found. A value, made on the scanning worker and handed by
// copy to the main thread.

#pragma once

#include "DiscoveredEntry.h"

#include <QByteArray>
#include <QList>

struct ScanProgress {
    qint64 filesScanned = 0;
    qint64 bytesScanned = 0; // allocated bytes
    QByteArray currentPath;
    QList<DiscoveredEntry> discovered; // in the order found
    friend bool operator==(const ScanProgress &, const ScanProgress &) = default;
};
