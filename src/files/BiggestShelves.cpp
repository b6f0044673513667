#include "BiggestShelves.h"

#include "PathSearch.h"

#include "core/Fmt.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <climits>

namespace BiggestShelves {

std::vector<FileItem> matches(const std::vector<FileItem> &files, const Filters &filters, const CancelToken *token)
{
    // Filtering first and sorting stably afterwards gives the same list as
    // sorting first, at the cost of sorting only what is kept.
    std::vector<FileItem> kept;
    qsizetype seen = 0;
    for (const FileItem &file : files) {
        if (token && (++seen & 0x3fff) == 0 && token->isCancelled())
            return {};
        if (filters.category && file.category != *filters.category)
            continue;
        if (filters.hidePackages && file.isPackage)
            continue;
        if (!PathSearch::matches(file.path, filters.search))
            continue;
        kept.push_back(file);
    }
    if (token && token->isCancelled())
        return {};
    filters.sort.sort(kept);
    return kept;
}

QString subtitle(qsizetype count, qint64 bytes)
{
    return QCoreApplication::translate("Files", "%Ln files · %1", nullptr, int(std::min<qsizetype>(count, INT_MAX)))
        .arg(Fmt::bytes(bytes));
}

QString emptyTitle() { return QCoreApplication::translate("Files", "Nothing this heavy"); }

QString emptyText() { return QCoreApplication::translate("Files", "No files match. Loosen the filters a little."); }

} // namespace BiggestShelves
