#include "SteamRules.h"

#include "core/Fmt.h"
#include "core/NameOrder.h"
#include "core/Paths.h"
#include "deepclean/CleanupModel.h"

#include <QCoreApplication>
#include <QHash>
#include <QLocale>

#include <algorithm>

namespace SteamRules {

namespace {

QString deepCleanText(const char *text) { return QCoreApplication::translate("DeepClean", text); }

bool holds(const QString &text, const QString &search) { return text.contains(search, Qt::CaseInsensitive); }

QString projectName(const DevArtifact &artifact)
{
    return Paths::toDisplay(Paths::lastComponent(Paths::parentOf(artifact.path)));
}

} // namespace

QList<LocationRow> rows(const CleanupModel &cleanup)
{
    QList<LocationRow> out;
    for (const JunkLocation &location : cleanup.visibleLocations()) {
        const auto usage = cleanup.measurements().constFind(location.id);
        if (usage != cleanup.measurements().constEnd())
            out.append({location, *usage});
    }
    return out;
}

QList<DevArtifact> artifacts(const ScanResultPtr &result)
{
    QList<DevArtifact> out;
    if (!result)
        return out;
    for (const DevArtifact &artifact : result->artifacts)
        if (artifact.size >= artifactFloor)
            out.append(artifact);
    return out;
}

CleanItem locationItem(const JunkLocation &location, const DiskUsage &usage)
{
    CleanItem item;
    item.id = CleanItem::junkPrefix.toByteArray() + location.id.toUtf8();
    item.name = location.title;
    item.size = usage.size;
    item.kind = CleanItem::Kind::junk;
    // The item's verdict follows its heat: a safe location rebuilds itself,
    // one to look at first is not judged safe for it.
    item.heat = location.risk == JunkLocation::Risk::caution ? 0.6 : 1.0;
    item.source = CleanItem::Source::deepClean;
    return item;
}

QList<CleanItem> safeItems(const QList<LocationRow> &rows, const QList<DevArtifact> &artifacts)
{
    QList<CleanItem> items;
    for (const LocationRow &row : rows)
        if (row.location.risk == JunkLocation::Risk::safe && row.usage.readable && row.usage.size > 0)
            items.append(locationItem(row.location, row.usage));
    for (const DevArtifact &artifact : artifacts)
        items.append(CleanItem::artifact(artifact));
    return items;
}

QList<LocationRow> shownRows(const QList<LocationRow> &rows, DeepCleanFilter filter, const QString &search,
                             NameSizeSort sort)
{
    QList<LocationRow> shown;
    for (const LocationRow &row : rows) {
        if (!filter.showsLocation(row.location.risk))
            continue;
        if (!search.isEmpty() && !holds(row.location.title, search) && !holds(row.location.detail, search))
            continue;
        shown.append(row);
    }
    if (sort == NameSizeSort::size)
        std::stable_sort(shown.begin(), shown.end(),
                         [](const LocationRow &a, const LocationRow &b) { return a.usage.size > b.usage.size; });
    else
        std::stable_sort(shown.begin(), shown.end(), [](const LocationRow &a, const LocationRow &b) {
            return NameOrder::compare(a.location.title, b.location.title) < 0;
        });
    return shown;
}

QList<DevArtifact> shownArtifacts(const QList<DevArtifact> &artifacts, DeepCleanFilter filter, const QString &search,
                                  NameSizeSort sort)
{
    QList<DevArtifact> shown;
    if (!filter.showsArtifacts())
        return shown;
    for (const DevArtifact &artifact : artifacts) {
        if (!search.isEmpty() && !holds(Paths::toDisplay(artifact.path), search) && !holds(artifact.kind, search))
            continue;
        shown.append(artifact);
    }
    if (sort == NameSizeSort::size)
        std::stable_sort(shown.begin(), shown.end(),
                         [](const DevArtifact &a, const DevArtifact &b) { return a.size > b.size; });
    else
        std::stable_sort(shown.begin(), shown.end(), [](const DevArtifact &a, const DevArtifact &b) {
            return NameOrder::compare(projectName(a), projectName(b)) < 0;
        });
    return shown;
}

QString blurb(const QString &id, Platform platform)
{
    static const QHash<QString, const char *> macOS = {
        {QStringLiteral("caches"), QT_TRANSLATE_NOOP("DeepClean", "rebuilds itself")},
        {QStringLiteral("logs"), QT_TRANSLATE_NOOP("DeepClean", "diagnostics")},
        {QStringLiteral("derived"), QT_TRANSLATE_NOOP("DeepClean", "Xcode rebuilds")},
        {QStringLiteral("devicesupport"), QT_TRANSLATE_NOOP("DeepClean", "re-copied on connect")},
        {QStringLiteral("simcaches"), QT_TRANSLATE_NOOP("DeepClean", "simulator runtime")},
        {QStringLiteral("archives"), QT_TRANSLATE_NOOP("DeepClean", "holds dSYMs")},
        {QStringLiteral("pkgcaches"), QT_TRANSLATE_NOOP("DeepClean", "re-downloads")},
        {QStringLiteral("installers"), QT_TRANSLATE_NOOP("DeepClean", ".dmg · .pkg · .iso")},
        {QStringLiteral("backups"), QT_TRANSLATE_NOOP("DeepClean", "device backups")},
    };
    static const QHash<QString, const char *> linux = {
        {QStringLiteral("caches"), QT_TRANSLATE_NOOP("DeepClean", "rebuilds itself")},
        {QStringLiteral("thumbnails"), QT_TRANSLATE_NOOP("DeepClean", "redrawn when shown")},
        {QStringLiteral("browsers"), QT_TRANSLATE_NOOP("DeepClean", "refills as you browse")},
        {QStringLiteral("flatpak"), QT_TRANSLATE_NOOP("DeepClean", "apps rebuild it")},
        {QStringLiteral("pkgcaches"), QT_TRANSLATE_NOOP("DeepClean", "re-downloads")},
        {QStringLiteral("installers"), QT_TRANSLATE_NOOP("DeepClean", ".deb · .rpm · .iso")},
    };
    const char *text = (platform == Platform::linux ? linux : macOS).value(id, nullptr);
    return text ? deepCleanText(text) : QString();
}

QString smallPrint(const LocationRow &row, const QByteArrayList &folders, Platform platform, const QByteArray &home)
{
    const QString why = row.usage.readable            ? blurb(row.location.id, platform)
                        : platform == Platform::linux ? deepCleanText("can't be read")
                                                      : deepCleanText("needs Full Disk Access");
    // One folder is named; a location of several counts where it was found, or
    // says it was found nowhere. A figure with no folder to name goes unplaced.
    QString where;
    if (folders.size() == 1)
        where = Paths::abbreviateHome(folders.first(), home);
    else if (folders.isEmpty() && row.location.paths.size() == 1)
        where = Paths::abbreviateHome(row.location.paths.first(), home);
    else if (folders.isEmpty() && row.usage.size <= 0)
        where = deepCleanText("not on this computer");
    else if (!folders.isEmpty())
        where = QCoreApplication::translate("DeepClean", "%n folders", nullptr, int(folders.size()));
    if (where.isEmpty() || why.isEmpty())
        return where.isEmpty() ? why : where;
    return where + QStringLiteral(" · ") + why;
}

QString trashValue(const std::optional<DiskUsage> &trash, Platform platform)
{
    if (!trash)
        return {};
    if (!trash->readable)
        return platform == Platform::linux ? deepCleanText("can't be read") : deepCleanText("needs access");
    return Fmt::bytes(std::max<qint64>(trash->size, 0));
}

QString safeSummary(qint64 bytes) { return deepCleanText("%1 is safe to sorvelise").arg(Fmt::bytes(bytes)); }

} // namespace SteamRules
