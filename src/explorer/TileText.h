// The words on and around a tile and the grid: kind line, tooltip, toasts, the
// lines under and instead of the grid, the composition strip's measures. Plain
// functions without state, so the views only render what these say; main thread.

#pragma once

#include "ExplorerEntry.h"
#include "ExplorerQuery.h"
#include "HelpFacts.h"
#include "HelpLine.h"

#include <QString>
#include <QStringList>

namespace TileText {

// The second line of a list row: "Measuring…", "Couldn't be read · reason",
// or plainKindLine, followed for a folder that holds unreadable folders by
// their count.
QString kindLine(const ExplorerEntry &entry);
// A risk title, an artefact kind, "Folder · N files", a category title, "App or
// bundle" or "File".
QString plainKindLine(const ExplorerEntry &entry);

// What stands instead of the size of a folder that couldn't be listed.
QString unreadableSize();
// "N unreadable": folders below a tile that couldn't be read.
QString unreadableCount(int n);
// "N folders couldn't be read": the folder header's notice.
QString unreadableNotice(int n);
// Instead of an empty grid, in a folder that couldn't be listed.
QString unreadableFolderLine(const QString &name, int error);

// The tooltip, one line per fact that applies; the kept and the dangerous lead
// with the symbols "lock.fill" and "exclamationmark.triangle.fill".
QList<HelpLine> helpLines(const ExplorerEntry &entry, const HelpFacts &facts);
// The lines' texts, one a line: the tooltip as plain text.
QString helpText(const QList<HelpLine> &lines);

// The toast for a protected item: "“name” stays: reason".
QString protectedToast(const QString &name, const QString &reason);
// The warning for a dangerous item that is being selected.
QString dangerToast(const QString &name, const QString &why);

// The steamer's water level, 0.12 ... 0.95, for the bytes in the selection.
double waterLevel(qint64 bytes);

// "Showing {visible} of {all} · more load as you scroll".
QString showingLine(qint64 visible, qint64 all);

// Instead of an empty grid: what the search or the filter found nothing of.
QString emptyLine(const ExplorerQuery &query);

// The row of the loose small files, of `size` bytes in all, still to be listed
// or on their way.
QString smallFilesLine(qint64 size, bool loading);
// The same row for `size` bytes of small files that can't be listed.
QString smallFilesRestLine(qint64 size);

// The composition strip: segment widths for parts of `sizes` in a bar of
// `width` with gaps of 2, each at least 2 wide.
QList<double> segmentWidths(const QList<qint64> &sizes, double width);
// How many legend entries to show: the first 6, else 4, 3 or 2, the most that
// fit in `width` (all of them when there are fewer than the tried count).
int legendCount(const QList<double> &entryWidths, double width, double gap);

// The verdict in words: the level ("Safe", "Normal", "Caution", "Danger",
// "Locked"), and after a colon the risk's title when it has one.
QString verdict(const Risk &risk);
// What a screen reader says for a tile: its name, size, share of `total` (the
// folder's size; left out when unknown) and verdict, as in "Photos, 6.1 GB,
// 12% of this folder, Normal".
QString accessibleName(const ExplorerEntry &entry, qint64 total);

} // namespace TileText
