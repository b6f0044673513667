// Whether reading several files at once is free of seek cost: the files sit on
// devices that do not rotate (or in memory), or have nearly all their pages in
// the page cache already. Stateless; reads the system's tables, any thread.

#pragma once

#include <QByteArray>

#include <vector>

// "Nearly all" is all but at most 1/32 of their bytes (a cache under memory
// pressure drops a few pages here and there). Unknown devices count as
// rotating, so an uncached spinning disk is always read one file at a time.
namespace StorageProbe {

bool allSeekFree(const std::vector<QByteArray> &paths);

} // namespace StorageProbe
