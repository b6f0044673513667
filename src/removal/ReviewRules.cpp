#include "ReviewRules.h"

#include "core/Fmt.h"
#include "core/Paths.h"
#include "core/ScanResult.h"
#include "deepclean/JunkLocation.h"
#include "safety/SafetyGuard.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <climits>
#include <map>

namespace {

QString tr(const char *text) { return QCoreApplication::translate("ReviewSheet", text); }

// A count text: the table gives the form for `n`, %Ln its digits.
QString tr(const char *text, qint64 n)
{
    return QCoreApplication::translate("ReviewSheet", text, nullptr, int(std::min<qint64>(n, INT_MAX)));
}

QString quoted(const QString &name) { return QStringLiteral("\u201c%1\u201d").arg(name); }

} // namespace

namespace ReviewRules {

Risk itemRisk(const CleanItem &item) { return item.risk(); }

bool isLocked(const CleanItem &item)
{
    if (item.isJunk())
        return false;
    const QByteArray normalized = Paths::normalize(item.id);
    if (SafetyGuard::isContentsOnly(normalized))
        return false;
    // Kept too when it really leads somewhere protected: the removal would
    // refuse it at the last moment.
    return SafetyGuard::isProtected(normalized) || SafetyGuard::lastWord(normalized).refused();
}

bool isContentsOnly(const CleanItem &item)
{
    if (item.isJunk() || item.kind == CleanItem::Kind::file)
        return false;
    return SafetyGuard::isContentsOnly(Paths::normalize(item.id));
}

BadgeKind badgeFor(const CleanItem &item)
{
    if (isLocked(item))
        return BadgeKind::kept;
    if (isContentsOnly(item))
        return BadgeKind::contentsOnly;
    return BadgeKind::risk;
}

QList<CleanItem> included(const QList<CleanItem> &items, const QSet<QByteArray> &excluded)
{
    QList<CleanItem> result;
    for (const CleanItem &item : items)
        if (!excluded.contains(item.id))
            result << item;
    return result;
}

qint64 totalSize(const QList<CleanItem> &items)
{
    qint64 total = 0;
    for (const CleanItem &item : items)
        total += item.size;
    return total;
}

QList<CleanItem> dangers(const QList<CleanItem> &included, const RiskFunction &risk)
{
    QList<CleanItem> result;
    for (const CleanItem &item : included)
        if (!isLocked(item) && risk(item).level == Risk::Level::danger)
            result << item;
    return result;
}

QList<CleanItem> locked(const QList<CleanItem> &included)
{
    QList<CleanItem> result;
    for (const CleanItem &item : included)
        if (isLocked(item))
            result << item;
    return result;
}

DangerBanner dangerBanner(const QList<CleanItem> &dangers, const RiskFunction &risk)
{
    DangerBanner banner;
    if (dangers.isEmpty())
        return banner;
    banner.title = tr("%Ln items hold data that can't be rebuilt", dangers.size());

    // Grouped by the risk's title, the groups in ascending order of it; the
    // items of a group keep their order.
    struct Group {
        QList<CleanItem> items;
        Risk first;
    };
    std::map<QString, Group> groups;
    for (const CleanItem &item : dangers) {
        const Risk verdict = risk(item);
        Group &group = groups[verdict.title];
        if (group.items.isEmpty())
            group.first = verdict;
        group.items << item;
    }
    int drawn = 0;
    for (const auto &[title, group] : groups) {
        if (drawn == bannerKinds)
            break;
        ++drawn;
        if (group.items.size() == 1)
            banner.lines << BannerLine{group.items.first().name,
                                       QStringLiteral(" · %1: %2").arg(title, group.first.why)};
        else
            banner.lines << BannerLine{tr("%1 · %Ln items", group.items.size()).arg(title),
                                       QStringLiteral(": %1").arg(group.first.why)};
    }
    const qsizetype more = qsizetype(groups.size()) - bannerKinds;
    if (more > 0)
        banner.closing = tr("and %Ln more kinds, marked below", more);
    else if (dangers.size() >= 2)
        banner.closing = tr("Each one is marked in the list below.");
    return banner;
}

QString keptNote(const QList<CleanItem> &locked)
{
    if (locked.isEmpty())
        return {};
    QStringList names;
    for (const CleanItem &item : locked)
        names << quoted(item.name);
    const QString tail = tr(". Open them in Space to clean inside.", locked.size());
    return tr("Kept by the safety guard: ") + names.join(QStringLiteral(", ")) + tail;
}

bool canRemove(qsizetype includedCount, qsizetype dangerCount, bool acknowledged)
{
    return includedCount > 0 && (dangerCount == 0 || acknowledged);
}

QString trashButtonTitle(qint64 total)
{
    return tr("Sorvelise %1 to Trash").arg(Fmt::bytes(std::max<qint64>(total, 0)));
}

QString trashButtonHelp(bool blockedByBanner)
{
    return blockedByBanner ? tr("Confirm the warning above first") : tr("Moves everything ticked to the Trash");
}

QString countLine(qsizetype n, qint64 total)
{
    const QString items = tr("%Ln items", n);
    return items + QStringLiteral(" · ") + Fmt::bytes(std::max<qint64>(total, 0));
}

QString sourceTitle(CleanItem::Source source)
{
    switch (source) {
    case CleanItem::Source::space:
        return tr("Space");
    case CleanItem::Source::files:
        return tr("Files");
    case CleanItem::Source::deepClean:
        return tr("Deep Clean");
    }
    return {};
}

const JunkLocation *location(const CleanItem &item, const QList<JunkLocation> &locations)
{
    if (!item.isJunk())
        return nullptr;
    for (const JunkLocation &candidate : locations)
        if (item.id == CleanItem::junkPrefix.toByteArray() + candidate.id.toUtf8())
            return &candidate;
    return nullptr;
}

QString detailLine(const CleanItem &item, const ScanResult *result, const QList<JunkLocation> &locations)
{
    QStringList parts;
    if (item.isJunk()) {
        if (const JunkLocation *found = location(item, locations)) {
            if (!found->detail.isEmpty())
                parts << found->detail;
            if (found->paths.size() == 1)
                parts << Fmt::displayName(found->paths.first());
            else if (found->paths.size() > 1)
                parts << tr("%Ln folders", found->paths.size());
        }
    } else if (item.kind != CleanItem::Kind::file && result) {
        if (const DirNodePtr node = result->node(item.id))
            parts << tr("%Ln files inside", node->fileCount);
    }
    return parts.join(QStringLiteral(", "));
}

} // namespace ReviewRules
