#include "PathSearch.h"

#include "core/Paths.h"

namespace PathSearch {

bool matches(QByteArrayView path, const QString &search)
{
    if (search.isEmpty())
        return true;
    return Paths::toDisplay(path).contains(search, Qt::CaseInsensitive);
}

} // namespace PathSearch
