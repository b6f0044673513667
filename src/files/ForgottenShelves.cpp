#include "ForgottenShelves.h"

#include "PathSearch.h"

#include "core/Fmt.h"

#include <QCoreApplication>
#include <QDateTime>

#include <cmath>

namespace ForgottenShelves {

namespace {

QString filesText(const char *text) { return QCoreApplication::translate("Files", text); }

} // namespace

double cutoff(int months, double now)
{
    const QDateTime date = QDateTime::fromMSecsSinceEpoch(qint64(std::llround(now * 1000.0)));
    const QDateTime back = date.addMonths(-months);
    return back.isValid() ? double(back.toMSecsSinceEpoch()) / 1000.0 : now;
}

std::vector<FileItem> matches(const std::vector<FileItem> &files, int months, double now, const QString &search,
                              FileSort sort, const CancelToken *token)
{
    const double before = cutoff(months, now);
    std::vector<FileItem> kept;
    qsizetype seen = 0;
    for (const FileItem &file : files) {
        if (token && (++seen & 0x3fff) == 0 && token->isCancelled())
            return {};
        if (file.size < sizeFloor || FileSort::lastUse(file) >= before)
            continue;
        if (!PathSearch::matches(file.path, search))
            continue;
        kept.push_back(file);
    }
    if (token && token->isCancelled())
        return {};
    sort.sort(kept);
    return kept;
}

QString age(int months)
{
    return months < 12 ? QCoreApplication::translate("Files", "%1+ mo").arg(months)
                       : QCoreApplication::translate("Files", "%1+ yr").arg(months / 12);
}

QString detail(int months) { return QCoreApplication::translate("Files", "untouched for %1").arg(age(months)); }

QString subtitle(qint64 bytes)
{
    return QCoreApplication::translate("Files", "%1 in files over 10 MB nobody has opened").arg(Fmt::bytes(bytes));
}

QString emptyTitle() { return filesText("Nothing forgotten"); }

QString emptyText() { return filesText("Every big file here has been opened or changed recently."); }

} // namespace ForgottenShelves
