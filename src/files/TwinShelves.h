// The Twins shelf's logic over the duplicate groups: which groups a search
// keeps and in what order, which copy of a group is kept, and the shelf's
// texts. Plain functions; called on the main thread.

#pragma once

#include "TwinSort.h"

#include "core/SizeThreshold.h"
#include "duplicates/DuplicateGroup.h"
#include "removal/CleanItem.h"

#include <QList>
#include <QString>

#include <array>
#include <vector>

class DuplicatesModel;

namespace TwinShelves {

// The thresholds the picker offers, in order.
inline constexpr std::array<SizeThreshold, 3> offeredThresholds = {SizeThreshold::mb10, SizeThreshold::mb100,
                                                                   SizeThreshold::gb1};
QString thresholdLabel(SizeThreshold threshold); // "10 MB+", "100 MB+", "1 GB+"

// The groups with at least one file whose path holds `search` (whole groups
// stay), sorted stably by `sort`. Pointers into `groups`.
std::vector<const DuplicateGroup *> groups(const std::vector<DuplicateGroup> &groups, const QString &search,
                                           TwinSort sort);

// The index of the copy that stays: the newest, and of equally new ones the
// first in the group's order. -1 for an empty group.
int keptIndex(const DuplicateGroup &group);
// Every other copy, judged by file id, as items of the selection.
QList<CleanItem> extras(const DuplicateGroup &group);

// What the shelf shows, tested in this order.
enum class Content : quint8 { running, neverRun, noTwins, list };
Content content(const DuplicatesModel &model);

// "3 sets of identical files · 4.2 GB in extra copies" after a run with
// results, else the line on what the search proves.
QString subtitle(const DuplicatesModel &model);
// "No identical files at or above 10 MB"
QString noTwinsText(SizeThreshold threshold);
// "3 copies · 1.2 GB extra"
QString groupLine(const DuplicateGroup &group);

} // namespace TwinShelves
