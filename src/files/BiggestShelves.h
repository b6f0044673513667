// The Biggest shelf's list and texts: every listed file of a scan, sorted, then
// narrowed by kind, by packages and by a search. Plain functions; any thread
// (the list of a big scan is derived on a worker).

#pragma once

#include "FileSort.h"

#include "core/CancelToken.h"
#include "core/FileCategory.h"
#include "core/FileItem.h"

#include <QString>

#include <optional>
#include <vector>

namespace BiggestShelves {

struct Filters {
    FileSort sort = FileSort::size;
    std::optional<FileCategory> category;
    bool hidePackages = false;
    QString search;
};

// The files that pass the filters, in the order of `sort`; stable, so ties keep
// the scan's order. Empty when `token` is cancelled on the way.
std::vector<FileItem> matches(const std::vector<FileItem> &files, const Filters &filters,
                              const CancelToken *token = nullptr);

// "1,204 files · 38.2 GB"
QString subtitle(qsizetype count, qint64 bytes);
QString emptyTitle(); // "Nothing this heavy"
QString emptyText();

} // namespace BiggestShelves
