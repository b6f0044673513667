#include "TileText.h"

#include "core/Fmt.h"
#include "core/Paths.h"
#include "core/Platform.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <climits>
#include <cmath>

namespace {

QString explorerText(const char *text) { return QCoreApplication::translate("Explorer", text); }

QByteArray extensionOf(const QByteArray &path)
{
    const QByteArray last = Paths::lastComponent(path);
    return Paths::extension(last).toByteArray().toLower();
}

bool hasPackageExtension(const QByteArray &path)
{
    const QByteArray ext = extensionOf(path);
    return !ext.isEmpty() && FileCategory::isPackageExtension(ext);
}

QString explorerCount(const char *text, int n) { return QCoreApplication::translate("Explorer", text, nullptr, n); }

QString safeToSorvelise(const QString &kind)
{
    return kind + explorerText(QT_TRANSLATE_NOOP("Explorer", " · safe to sorvelise"));
}

} // namespace

namespace TileText {

QString unreadableSize() { return explorerText(QT_TRANSLATE_NOOP("Explorer", "Couldn't be read")); }

QString unreadableCount(int n) { return explorerCount(QT_TRANSLATE_NOOP("Explorer", "%n unreadable"), n); }

QString unreadableNotice(int n)
{
    return explorerCount(QT_TRANSLATE_NOOP("Explorer", "%n folders couldn't be read"), n);
}

QString unreadableFolderLine(const QString &name, int error)
{
    return explorerText(QT_TRANSLATE_NOOP("Explorer", "“%1” couldn't be listed: %2. What it holds and its size are "
                                                      "unknown."))
        .arg(name, DirNode::errorText(error));
}

QString kindLine(const ExplorerEntry &entry)
{
    if (entry.measuring)
        return explorerText(QT_TRANSLATE_NOOP("Explorer", "Measuring…"));
    if (entry.isUnreadable())
        return unreadableSize() + QStringLiteral(" · ") + DirNode::errorText(entry.readError);
    QString line = plainKindLine(entry);
    if (entry.isDirectory && entry.unreadableBelow > 0)
        line += QStringLiteral(" · ") + unreadableCount(entry.unreadableBelow);
    return line;
}

QString plainKindLine(const ExplorerEntry &entry)
{
    if (entry.risk.level >= Risk::Level::caution)
        return entry.risk.title;
    if (entry.hasArtifactKind())
        return safeToSorvelise(entry.artifactKind);
    if (entry.isDirectory && !hasPackageExtension(entry.id)) {
        if (entry.fileCount)
            return QCoreApplication::translate("Explorer", "Folder · %Ln files", nullptr,
                                               int(std::min<qint64>(*entry.fileCount, INT_MAX)));
        return explorerText(QT_TRANSLATE_NOOP("Explorer", "Folder"));
    }
    if (entry.category)
        return entry.category->title();
    if (hasPackageExtension(entry.id))
        return explorerText(QT_TRANSLATE_NOOP("Explorer", "App or bundle"));
    return explorerText(QT_TRANSLATE_NOOP("Explorer", "File"));
}

QList<HelpLine> helpLines(const ExplorerEntry &entry, const HelpFacts &facts)
{
    QList<HelpLine> lines;
    lines << HelpLine{Paths::abbreviateHome(entry.id), {}};
    if (entry.isUnreadable())
        lines << HelpLine{explorerText(QT_TRANSLATE_NOOP("Explorer", "Couldn't be read: %1. Its size is unknown"))
                              .arg(DirNode::errorText(entry.readError)),
                          {}};
    else if (entry.readError != 0)
        lines << HelpLine{explorerText(QT_TRANSLATE_NOOP("Explorer", "Only partly read: %1"))
                              .arg(DirNode::errorText(entry.readError)),
                          {}};
    if (const int inside = entry.unreadableBelow - (entry.readError != 0 ? 1 : 0); inside > 0)
        lines << HelpLine{explorerCount(QT_TRANSLATE_NOOP("Explorer", "%n folders inside couldn't be read"), inside),
                          {}};
    const bool kept = facts.isProtected && !facts.isContentsOnly;
    if (kept)
        lines << HelpLine{facts.protectedReason, QStringLiteral("lock.fill")};
    if (entry.risk.level == Risk::Level::danger)
        lines << HelpLine{QStringLiteral("%1: %2").arg(entry.risk.title, entry.risk.why),
                          QStringLiteral("exclamationmark.triangle.fill")};
    else if (entry.risk.level == Risk::Level::caution)
        lines << HelpLine{QStringLiteral("%1: %2").arg(entry.risk.title, entry.risk.why), {}};
    if (facts.isContentsOnly)
        lines << HelpLine{explorerText(QT_TRANSLATE_NOOP(
                              "Explorer", "Selecting it sorvelises everything inside; the folder itself stays")),
                          {}};
    if (entry.hasArtifactKind())
        lines << HelpLine{safeToSorvelise(entry.artifactKind), {}};
    if (facts.condition == ExplorerTile::Condition::bloated)
        lines << HelpLine{explorerText(QT_TRANSLATE_NOOP("Explorer", "One of the heaviest things here")), {}};
    if (entry.node)
        lines << HelpLine{explorerText(QT_TRANSLATE_NOOP("Explorer", "Click to open")), {}};
    else if (entry.isDirectory)
        lines << HelpLine{explorerText(QT_TRANSLATE_NOOP("Explorer", "Opens once the scan finishes")), {}};
    else
        lines << HelpLine{explorerText(QT_TRANSLATE_NOOP("Explorer", "Click to preview")), {}};
    if (!facts.coveringName.isEmpty() && !facts.inQueue)
        lines << HelpLine{
            explorerText(
                QT_TRANSLATE_NOOP("Explorer", "Included because “%1” is selected. Untick to leave just this out"))
                .arg(facts.coveringName),
            {}};
    if (!kept) {
        const QString mark = facts.layout == ExplorerLayout::list
                                 ? explorerText(QT_TRANSLATE_NOOP("Explorer", "Checkbox"))
                                 : explorerText(QT_TRANSLATE_NOOP("Explorer", "Circle"));
        lines << HelpLine{
            mark + (facts.includes
                        ? explorerText(QT_TRANSLATE_NOOP("Explorer", ", ⌘-click or Space to deselect"))
                        : explorerText(QT_TRANSLATE_NOOP("Explorer", ", ⌘-click or Space to select for cleaning"))),
            {}};
    }
    return lines;
}

QString helpText(const QList<HelpLine> &lines)
{
    QStringList texts;
    for (const HelpLine &line : lines)
        texts << line.text;
    return texts.join(QLatin1Char('\n'));
}

QString protectedToast(const QString &name, const QString &reason)
{
    return explorerText(QT_TRANSLATE_NOOP("Explorer", "“%1” stays: %2")).arg(name, reason.toLower());
}

QString dangerToast(const QString &name, const QString &why)
{
    return explorerText(QT_TRANSLATE_NOOP("Explorer", "Careful: “%1”: %2. You'll confirm before anything is removed."))
        .arg(name, why.toLower());
}

double waterLevel(qint64 bytes)
{
    if (bytes <= 0)
        return 0.12;
    const double g = double(bytes) / 1'000'000'000.0;
    const double l = std::log10(1.0 + 8.0 * g) / std::log10(801.0);
    return std::min(0.95, 0.3 + 0.65 * l);
}

QString showingLine(qint64 visible, qint64 all)
{
    return explorerText(QT_TRANSLATE_NOOP("Explorer", "Showing %1 of %2 · more load as you scroll"))
        .arg(QLocale().toString(visible), QLocale().toString(all));
}

QString emptyLine(const ExplorerQuery &query)
{
    if (!query.search.isEmpty())
        return explorerText(QT_TRANSLATE_NOOP("Explorer", "Nothing here is named like “%1”.")).arg(query.search);
    return explorerText(QT_TRANSLATE_NOOP("Explorer", "No %1 in this folder.")).arg(query.filter.title().toLower());
}

QString smallFilesLine(qint64 size, bool loading)
{
    if (loading)
        return explorerText(QT_TRANSLATE_NOOP("Explorer", "Loading %1 in smaller files…")).arg(Fmt::bytes(size));
    return explorerText(QT_TRANSLATE_NOOP("Explorer", "Scroll to load %1 in smaller files")).arg(Fmt::bytes(size));
}

QString smallFilesRestLine(qint64 size)
{
    return explorerText(QT_TRANSLATE_NOOP("Explorer", "%1 in smaller files, not listed one by one"))
        .arg(Fmt::bytes(size));
}

QList<double> segmentWidths(const QList<qint64> &sizes, double width)
{
    double total = 0;
    for (const qint64 size : sizes)
        total += double(size);
    QList<double> out;
    const double room = width - 2.0 * double(sizes.size());
    for (const qint64 size : sizes)
        out << std::max(2.0, total > 0 ? double(size) * room / total : 0.0);
    return out;
}

int legendCount(const QList<double> &entryWidths, double width, double gap)
{
    for (const int tried : {6, 4, 3, 2}) {
        const int n = std::min<int>(tried, int(entryWidths.size()));
        double needed = 0;
        for (int i = 0; i < n; ++i)
            needed += entryWidths[i] + (i > 0 ? gap : 0);
        if (needed <= width)
            return n;
    }
    return std::min<int>(2, int(entryWidths.size()));
}

QString verdict(const Risk &risk)
{
    QString level;
    switch (risk.level) {
    case Risk::Level::safe:
        level = explorerText(QT_TRANSLATE_NOOP("Explorer", "Safe"));
        break;
    case Risk::Level::normal:
        level = explorerText(QT_TRANSLATE_NOOP("Explorer", "Normal"));
        break;
    case Risk::Level::caution:
        level = explorerText(QT_TRANSLATE_NOOP("Explorer", "Caution"));
        break;
    case Risk::Level::danger:
        level = explorerText(QT_TRANSLATE_NOOP("Explorer", "Danger"));
        break;
    case Risk::Level::locked:
        level = explorerText(QT_TRANSLATE_NOOP("Explorer", "Locked"));
        break;
    }
    if (!risk.hasBadge())
        return level;
    return explorerText(QT_TRANSLATE_NOOP("Explorer", "%1: %2")).arg(level, risk.title);
}

QString accessibleName(const ExplorerEntry &entry, qint64 total)
{
    QStringList parts{entry.name};
    // A folder that couldn't be listed has no size to tell, only that.
    if (entry.isUnreadable()) {
        parts << unreadableSize() << verdict(entry.risk);
        return parts.join(QStringLiteral(", "));
    }
    parts << (entry.measuring && entry.size == 0 ? explorerText(QT_TRANSLATE_NOOP("Explorer", "Measuring…"))
                                                 : Fmt::bytes(entry.size));
    if (entry.unreadableBelow > 0)
        parts << unreadableCount(entry.unreadableBelow);
    if (total > 0)
        parts << explorerText(QT_TRANSLATE_NOOP("Explorer", "%1 of this folder"))
                     .arg(Fmt::percent(std::clamp(double(entry.size) / double(total), 0.0, 1.0)));
    parts << verdict(entry.risk);
    return parts.join(QStringLiteral(", "));
}

} // namespace TileText
