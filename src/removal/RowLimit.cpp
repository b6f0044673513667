#include "RowLimit.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>

namespace {

QString count(qsizetype n) { return QLocale().toString(qint64(n)); }

} // namespace

namespace RowLimit {

qsizetype shown(qsizetype count, qsizetype limit) { return std::min(count, limit); }

QString moreLine(qsizetype n, qsizetype limit)
{
    if (n <= limit)
        return {};
    return QCoreApplication::translate("RowLimit", "and %1 more").arg(count(n - limit));
}

} // namespace RowLimit
