#include "TwinShelves.h"

#include "FileRow.h"
#include "PathSearch.h"

#include "core/Fmt.h"
#include "duplicates/DuplicatesModel.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <climits>

namespace TwinShelves {

namespace {

QString filesText(const char *text) { return QCoreApplication::translate("Files", text); }
// A count text, in the form the table gives for `n`.
QString filesText(const char *text, qint64 n)
{
    return QCoreApplication::translate("Files", text, nullptr, int(std::min<qint64>(n, INT_MAX)));
}

} // namespace

QString thresholdLabel(SizeThreshold threshold)
{
    switch (threshold) {
    case SizeThreshold::mb100:
        return filesText("100 MB+");
    case SizeThreshold::gb1:
        return filesText("1 GB+");
    default:
        return filesText("10 MB+");
    }
}

std::vector<const DuplicateGroup *> groups(const std::vector<DuplicateGroup> &all, const QString &search, TwinSort sort)
{
    std::vector<const DuplicateGroup *> kept;
    kept.reserve(all.size());
    for (const DuplicateGroup &group : all) {
        if (search.isEmpty() || std::any_of(group.files.begin(), group.files.end(), [&](const FileItem &file) {
                return PathSearch::matches(file.path, search);
            }))
            kept.push_back(&group);
    }
    sort.sort(kept);
    return kept;
}

int keptIndex(const DuplicateGroup &group)
{
    int best = -1;
    for (int i = 0; i < int(group.files.size()); ++i) {
        if (best < 0 || group.files[size_t(i)].modified > group.files[size_t(best)].modified)
            best = i;
    }
    return best;
}

QList<CleanItem> extras(const DuplicateGroup &group)
{
    QList<CleanItem> items;
    const int kept = keptIndex(group);
    if (kept < 0)
        return items;
    const qint64 keptId = group.files[size_t(kept)].id;
    for (const FileItem &file : group.files) {
        if (file.id == keptId)
            continue;
        items.append(FileRow::item(file, 0.55));
    }
    return items;
}

Content content(const DuplicatesModel &model)
{
    if (model.isRunning())
        return Content::running;
    if (!model.hasRun())
        return Content::neverRun;
    if (model.groups().empty())
        return Content::noTwins;
    return Content::list;
}

QString subtitle(const DuplicatesModel &model)
{
    if (model.hasRun() && !model.groups().empty())
        return filesText("%Ln sets of identical files · %1 in extra copies", model.groupCount())
            .arg(Fmt::bytes(model.reclaimable()));
    return filesText("Byte-for-byte identical files (SHA-256), never just matching names");
}

QString noTwinsText(SizeThreshold threshold)
{
    return filesText("No identical files at or above ") + Fmt::bytes(threshold.rawValue());
}

QString groupLine(const DuplicateGroup &group)
{
    return filesText("%Ln copies · %1 extra", qint64(group.files.size()))
        .arg(Fmt::bytes(std::max<qint64>(group.reclaimable(), 0)));
}

} // namespace TwinShelves
