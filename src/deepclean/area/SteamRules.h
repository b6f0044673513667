// The lists and words of the Deep Clean area: measured locations and the scan's
// build artefacts, what a filter, a search and a sort leave of them, what
// "Select everything safe" takes, and a location row's small print. Plain
// functions over the models; called on the main thread, free of disk access
// once the locations are measured.

#pragma once

#include "DeepCleanFilter.h"
#include "NameSizeSort.h"

#include "core/DevArtifact.h"
#include "core/DiskUsage.h"
#include "core/Platform.h"
#include "core/ScanResult.h"
#include "deepclean/JunkLocation.h"
#include "removal/CleanItem.h"

#include <QList>
#include <QString>

#include <optional>

class CleanupModel;

namespace SteamRules {

// Smaller build artefacts are not worth a row.
inline constexpr qint64 artifactFloor = 1'000'000;

struct LocationRow {
    JunkLocation location;
    DiskUsage usage;
};

// The visible locations that have been measured, in catalogue order.
QList<LocationRow> rows(const CleanupModel &cleanup);
// The scan's artefacts of at least 1,000,000 bytes, in the scan's order.
QList<DevArtifact> artifacts(const ScanResultPtr &result);

// The item a location's tick adds: heat 1.0 (a cache) when safe, 0.6 (look
// first) otherwise.
CleanItem locationItem(const JunkLocation &location, const DiskUsage &usage);
// What "Select everything safe" takes, whatever the filter and search: safe,
// readable, non-empty locations, then every artefact.
QList<CleanItem> safeItems(const QList<LocationRow> &rows, const QList<DevArtifact> &artifacts);

// The rows the filter keeps whose title or detail holds `search`, sorted stably.
QList<LocationRow> shownRows(const QList<LocationRow> &rows, DeepCleanFilter filter, const QString &search,
                             NameSizeSort sort);
// The artefacts the filter keeps whose path or kind holds `search`, sorted
// stably; by name means by the project, the folder holding the artefact.
QList<DevArtifact> shownArtifacts(const QList<DevArtifact> &artifacts, DeepCleanFilter filter, const QString &search,
                                  NameSizeSort sort);

// A few words on why a location can go, by id and platform; empty when unknown.
QString blurb(const QString &id, Platform platform = Platform::current());
// "~/.cache · rebuilds itself", or "3 folders · can't be read"; `folders` are
// the location's paths that exist.
QString smallPrint(const LocationRow &row, const QByteArrayList &folders, Platform platform = Platform::current(),
                   const QByteArray &home = Platform::homeDirectory());
// What the Trash's plate says under its title: empty before the first
// measurement, a worded problem when it cannot be read, else its size.
QString trashValue(const std::optional<DiskUsage> &trash, Platform platform = Platform::current());
// "12.6 GB is safe to sorvelise"
QString safeSummary(qint64 bytes);

} // namespace SteamRules
