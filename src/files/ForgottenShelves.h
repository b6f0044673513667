// The Forgotten shelf's list and texts: big files whose last use lies more than
// a chosen number of calendar months back. Plain functions; any thread.

#pragma once

#include "FileSort.h"

#include "core/CancelToken.h"
#include "core/FileItem.h"

#include <QString>

#include <array>
#include <vector>

namespace ForgottenShelves {

// Smaller files are never forgotten ones.
inline constexpr qint64 sizeFloor = 10'000'000;

struct MonthChoice {
    int months;
    const char *label; // untranslated
};
// 3 mo, 6 mo, 1 yr, 2 yr.
inline constexpr std::array<MonthChoice, 4> monthChoices = {{
    {3, QT_TRANSLATE_NOOP("Files", "3 mo")},
    {6, QT_TRANSLATE_NOOP("Files", "6 mo")},
    {12, QT_TRANSLATE_NOOP("Files", "1 yr")},
    {24, QT_TRANSLATE_NOOP("Files", "2 yr")},
}};

// `months` whole calendar months before `now`, in local time (seconds since the
// epoch): 31 March less one month is the last day of February.
double cutoff(int months, double now);

// Files of at least 10,000,000 bytes last used before the cutoff and matching
// `search`, in the order of `sort`. Empty when `token` is cancelled on the way.
std::vector<FileItem> matches(const std::vector<FileItem> &files, int months, double now, const QString &search,
                              FileSort sort, const CancelToken *token = nullptr);

// "6+ mo" below a year, "1+ yr" and "2+ yr" from 12 months on.
QString age(int months);
QString detail(int months); // "untouched for 1+ yr"
// "38.2 GB in files over 10 MB nobody has opened"
QString subtitle(qint64 bytes);
QString emptyTitle(); // "Nothing forgotten"
QString emptyText();

} // namespace ForgottenShelves
