#pragma once

#include <QByteArray>

#include <vector>

// Whether reading several files at once is free of seek cost: true when every
// file either sits on a device that does not rotate (or in memory, as on tmpfs),
// or has all of its pages in the page cache already. Unknown devices count as
// rotating, so a spinning disk is always read one file at a time.
namespace StorageProbe {

bool allSeekFree(const std::vector<QByteArray> &paths);

} // namespace StorageProbe
