// The texts of the Space explorer's headers: the folder header (crumbs,
// subtitle, size and file count), the discovering header (the scan's progress),
// the composition strip and the welcome's recent targets. Plain functions of
// what they are given; called on the main thread.

#pragma once

#include "core/DirNode.h"
#include "core/ScanRecords.h"
#include "core/ScanResult.h"

#include <QByteArrayList>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <vector>

namespace SpaceHeader {

// -- The folder header -------------------------------------------------------
// The root's display name, then the name of each folder of `stack`.
QStringList crumbs(const ScanResult &result, const std::vector<DirNodePtr> &stack);
// Where `node` is; at the root, also how long its scan of `duration` seconds took.
QString subtitle(const DirNode &node, bool atRoot, double duration);
QString sizeText(const DirNode &node);
QString filesText(const DirNode &node); // "1,234 files"

// -- The discovering header --------------------------------------------------
// "Reading your disk" without a target, else "Reading <name>".
QString discoveringTitle(const QByteArray &scanTarget);
QString scanPath(const ScanProgress &progress);
QString scanBytesText(qint64 bytes);
QString scanCountsText(const ScanProgress &progress); // "N files · M found"

// -- The composition strip ---------------------------------------------------
// One map per category with a size, largest first: {category, title, size,
// hue, help}.
QVariantList composition(const ScanResult &result);
// Widths of the strip's segments for `composition` in a bar `width` wide.
QVariantList segmentWidths(const QVariantList &composition, double width);
// How many legend entries fit in `width` (see TileText::legendCount).
int legendCount(const QVariantList &entryWidths, double width, double gap);

// -- The welcome -------------------------------------------------------------
// The first three of `recents` as {path, title, help}.
QVariantList recents(const QByteArrayList &recents);

} // namespace SpaceHeader
