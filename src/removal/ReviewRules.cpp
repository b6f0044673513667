#include "ReviewRules.h"

#include "core/Fmt.h"
#include "core/Paths.h"
#include "core/ScanResult.h"
#include "deepclean/JunkLocation.h"
#include "safety/RiskCatalog.h"
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

Risk pathRisk(const QByteArray &path, bool isDirectory, bool isBuildOutput, std::optional<qint64> size)
{
    return RiskCatalog::assess(path, isDirectory, isBuildOutput, size);
}

QList<InsideDanger> dangersInside(const QList<CleanItem> &included, const ScanResult *result,
                                  const PathRiskFunction &risk)
{
    QList<InsideDanger> found;
    if (!result)
        return found;
    for (const CleanItem &item : included) {
        if (item.isJunk() || item.kind == CleanItem::Kind::file || isLocked(item) ||
            itemRisk(item).level == Risk::Level::danger)
            continue;
        const DirNodePtr top = result->node(item.id);
        if (!top)
            continue;
        int kept = 0;
        // Depth first with an explicit stack (a tree may be deeper than the
        // call stack); children go on in reverse so the walk reads in order.
        std::vector<std::pair<DirNodePtr, QByteArray>> stack{{top, top->path()}};
        while (!stack.empty() && kept < insideLimit) {
            auto [node, path] = std::move(stack.back());
            stack.pop_back();
            for (const FileItem &file : node->files) {
                const QByteArray filePath = Paths::join(path, file.name);
                const Risk verdict = risk(filePath, false, false, file.size);
                if (verdict.level == Risk::Level::danger && kept < insideLimit) {
                    found << InsideDanger{item.id, item.name, filePath, verdict};
                    ++kept;
                }
            }
            for (auto child = node->children.rbegin(); child != node->children.rend(); ++child) {
                if (!(*child)->artifactKind.isEmpty())
                    continue;
                QByteArray childPath = Paths::join(path, (*child)->name);
                const Risk verdict = risk(childPath, true, false, std::nullopt);
                if (verdict.level == Risk::Level::danger) {
                    if (kept < insideLimit) {
                        found << InsideDanger{item.id, item.name, childPath, verdict};
                        ++kept;
                    }
                    continue;
                }
                stack.emplace_back(*child, std::move(childPath));
            }
        }
    }
    return found;
}

DangerBanner dangerBanner(const QList<CleanItem> &dangers, const RiskFunction &risk)
{
    return dangerBanner(dangers, {}, risk);
}

DangerBanner dangerBanner(const QList<CleanItem> &dangers, const QList<InsideDanger> &inside, const RiskFunction &risk)
{
    DangerBanner banner;
    QSet<QByteArray> holders;
    for (const InsideDanger &finding : inside)
        holders.insert(finding.itemId);
    const qsizetype items = dangers.size() + holders.size();
    if (items == 0)
        return banner;
    banner.title = tr("%Ln items hold data that can't be rebuilt", items);

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
            banner.lines << BannerLine{tr("%1 · %Ln items", qint64(group.items.size())).arg(title),
                                       QStringLiteral(": %1").arg(group.first.why)};
    }
    // What lies inside selected folders is named with its path, as many lines
    // as the item's own dangers left room for (at least one).
    const qsizetype room = std::max<qsizetype>(1, bannerKinds - drawn);
    for (qsizetype i = 0; i < inside.size() && i < room; ++i) {
        const InsideDanger &finding = inside.at(i);
        banner.lines << BannerLine{tr("%1 inside %2").arg(finding.risk.title, quoted(finding.itemName)),
                                   QStringLiteral(": %1").arg(Paths::abbreviateHome(finding.path))};
    }
    const qsizetype more = qsizetype(groups.size()) - bannerKinds;
    const qsizetype moreInside = inside.size() - std::min(inside.size(), room);
    if (more > 0)
        banner.closing = tr("and %Ln more kinds, marked below", qint64(more));
    else if (moreInside > 0)
        banner.closing = tr("and %Ln more inside, marked below", qint64(moreInside));
    else if (items >= 2)
        banner.closing = tr("Each one is marked in the list below.");
    return banner;
}

QString insideNote(const QByteArray &itemId, const QList<InsideDanger> &inside)
{
    QStringList titles;
    for (const InsideDanger &finding : inside)
        if (finding.itemId == itemId && !titles.contains(finding.risk.title))
            titles << finding.risk.title;
    return titles.isEmpty() ? QString() : tr("Inside: %1").arg(titles.join(QStringLiteral(", ")));
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
