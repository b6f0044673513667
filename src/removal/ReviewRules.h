// What the review sheet before a removal shows and allows, as plain functions
// over the selection; the QML sheet only draws these. No state of their own;
// any thread.

#pragma once

#include "CleanItem.h"

#include "safety/Risk.h"

#include <QList>
#include <QSet>
#include <QString>

#include <functional>
#include <optional>

class ScanResult;
struct JunkLocation;

namespace ReviewRules {

// The verdict of an item; CleanItem::risk() unless a test supplies another.
using RiskFunction = std::function<Risk(const CleanItem &)>;
Risk itemRisk(const CleanItem &item);

// Not a junk item, refused by the safety guard (by its text or where it really
// leads) and not one of the folders whose contents alone may go: the executor
// will refuse it.
bool isLocked(const CleanItem &item);
// A folder that must stay while its contents go (a cache folder).
bool isContentsOnly(const CleanItem &item);

// The badge of a row in the review: "kept", "contents only", or the risk's.
enum class BadgeKind { kept, contentsOnly, risk };
BadgeKind badgeFor(const CleanItem &item);

// The queue's items that were not unticked, in queue order.
QList<CleanItem> included(const QList<CleanItem> &items, const QSet<QByteArray> &excluded);
qint64 totalSize(const QList<CleanItem> &items);
// Included items that are not locked and whose risk is `danger`.
QList<CleanItem> dangers(const QList<CleanItem> &included, const RiskFunction &risk = itemRisk);
QList<CleanItem> locked(const QList<CleanItem> &included);

// Something that can't be rebuilt found below a selected folder in the scan's
// tree: a Git repository, keys, a virtual machine... The outermost one only:
// what lies inside a repository is not listed again.
struct InsideDanger {
    QByteArray itemId; // the selected folder
    QString itemName;
    QByteArray path; // what was found below it
    Risk risk;
};
// The verdict of a path met inside a selected folder.
using PathRiskFunction =
    std::function<Risk(const QByteArray &path, bool isDirectory, bool isBuildOutput, std::optional<qint64> size)>;
Risk pathRisk(const QByteArray &path, bool isDirectory, bool isBuildOutput, std::optional<qint64> size);
// At most this many findings are kept for one selected folder.
inline constexpr int insideLimit = 50;
// Walks the scan's tree below every included folder that is neither locked nor
// a danger itself, and returns what it finds there with the verdict `danger`,
// item by item in queue order. Build output is not entered. Nothing without a
// scan.
QList<InsideDanger> dangersInside(const QList<CleanItem> &included, const ScanResult *result,
                                  const PathRiskFunction &risk = pathRisk);

// One line of the danger banner: `lead` is drawn bold, `rest` follows it.
struct BannerLine {
    QString lead;
    QString rest;
    friend bool operator==(const BannerLine &, const BannerLine &) = default;
};
struct DangerBanner {
    QString title;
    QList<BannerLine> lines; // three at most
    QString closing;         // may be empty
};
// At most this many kinds of danger get a line of their own.
inline constexpr int bannerKinds = 3;
// Empty title and lines when there is no danger. Findings inside selected
// folders follow the item's own dangers, each named with its path.
DangerBanner dangerBanner(const QList<CleanItem> &dangers, const RiskFunction &risk = itemRisk);
DangerBanner dangerBanner(const QList<CleanItem> &dangers, const QList<InsideDanger> &inside,
                          const RiskFunction &risk = itemRisk);
// The note on a row whose folder holds dangers: "Inside: Git repository, Keys
// & passwords". Empty when it holds none.
QString insideNote(const QByteArray &itemId, const QList<InsideDanger> &inside);

// The note on what the guard keeps; empty when nothing is locked.
QString keptNote(const QList<CleanItem> &locked);

// Both removal buttons: something ticked, and any danger acknowledged (count
// the item's own dangers and the items holding dangers inside together).
bool canRemove(qsizetype includedCount, qsizetype dangerCount, bool acknowledged);
QString trashButtonTitle(qint64 total);
QString trashButtonHelp(bool blockedByBanner);
// "3 items · 1.2 MB"
QString countLine(qsizetype count, qint64 total);
QString sourceTitle(CleanItem::Source source);
// The detail line under a row: the parts of a Deep Clean location, or the
// number of files inside a scanned folder. Empty when nothing is known.
QString detailLine(const CleanItem &item, const ScanResult *result, const QList<JunkLocation> &locations);
// The location of a junk item, or null.
const JunkLocation *location(const CleanItem &item, const QList<JunkLocation> &locations);

} // namespace ReviewRules
