// The measurement of one path: allocated bytes and file count below it, and
// whether it exists and could be read. A value; any thread.

#pragma once

#include <QtGlobal>

struct DiskUsage {
    qint64 size = 0;  // allocated bytes
    qint64 items = 0; // files
    bool exists = false;
    bool readable = false;
    friend bool operator==(const DiskUsage &, const DiskUsage &) = default;
};
