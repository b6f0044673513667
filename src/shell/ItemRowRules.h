// ItemRowRules: the texts and small decisions of a selectable row, as plain
// functions owning no state; asked on the GUI thread by ItemRowModel and Shell,
// and by tests directly.
#pragma once

#include "removal/CleanItem.h"
#include "removal/CleanQueue.h"
#include "removal/ReviewRules.h"

#include <QString>

namespace ItemRowRules {
// The row's tooltip: its name, a risk line from `caution` up, and what a click
// would do.
QString helpText(const CleanItem &item, const CleanQueue &queue, bool disabled,
                 const ReviewRules::RiskFunction &risk = ReviewRules::itemRisk);
QString accessibleLabel(bool loaded);
// A rebuildable item that is safe: "Safe to sorvelise" in place of a risk badge.
bool showsSafeBadge(const CleanItem &item, const Risk &risk);
// In 0 ..< 1, fixed per id: where a row's evaporation starts.
double evaporationSeed(const QByteArray &id);
// "Space 2 · Deep Clean 1"
QString sourcesLine(const QList<CleanQueue::SourceSummary> &bySource);
QString tr(const char *text);
} // namespace ItemRowRules
