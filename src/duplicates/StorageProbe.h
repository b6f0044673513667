#pragma once

#include <QByteArray>

#include <vector>

// Whether reading several files at once is free of seek cost: true when the
// files sit on devices that do not rotate (or in memory, as on tmpfs), or have
// their pages in the page cache already, all but at most 1/32 of their bytes
// (a cache under memory pressure drops a few pages here and there). Unknown
// devices count as rotating, so an uncached spinning disk is always read one
// file at a time.
namespace StorageProbe {

bool allSeekFree(const std::vector<QByteArray> &paths);

} // namespace StorageProbe
