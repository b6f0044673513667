// Toggling one entry of a Deep Clean location in the review's contents list,
// against the selection. Main thread, as the CleanQueue it changes.

#pragma once

#include "CleanItem.h"

#include "core/JunkEntry.h"

#include <QList>
#include <QString>

class CleanQueue;
struct JunkLocation;

namespace JunkContents {
// Selected if its path is queued or the whole location is.
bool isTicked(const CleanQueue &queue, const JunkLocation &location, const JunkEntry &entry);
// The help of a tick that is on through the whole location; empty otherwise.
QString tickHelp(const CleanQueue &queue, const JunkLocation &location, const JunkEntry &entry);
// The closing line of a list that shows the first `limit` of `entries`:
// "and 3 more (1.2 GB)"; empty when all are shown.
QString restLine(const QList<JunkEntry> &entries, qsizetype limit);
// The item that stands for one entry.
CleanItem itemFor(const JunkEntry &entry);
// Toggles the entry. With the whole location queued, it is replaced by every
// other entry of `entries`, and the returned text is the toast to show;
// otherwise the text is empty.
QString toggle(CleanQueue &queue, const JunkLocation &location, const JunkEntry &entry,
               const QList<JunkEntry> &entries);
} // namespace JunkContents
