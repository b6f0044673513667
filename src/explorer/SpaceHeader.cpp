#include "SpaceHeader.h"

#include "TileText.h"

#include "core/FileCategory.h"
#include "core/Fmt.h"
#include "core/Paths.h"

#include <QCoreApplication>
#include <QLocale>
#include <QVariantMap>

#include <algorithm>

namespace {

QString explorerText(const char *text) { return QCoreApplication::translate("Explorer", text); }

// The hue of each category in the composition strip, in turns (0...1); the
// strip gives all the same saturation and brightness.
double categoryHue(FileCategory category)
{
    switch (category) {
    case FileCategory::video:
        return 0.78;
    case FileCategory::audio:
        return 0.90;
    case FileCategory::image:
        return 0.55;
    case FileCategory::document:
        return 0.12;
    case FileCategory::archive:
        return 0.06;
    case FileCategory::diskImage:
        return 0.98;
    case FileCategory::application:
        return 0.40;
    case FileCategory::code:
        return 0.25;
    case FileCategory::developer:
        return 0.47;
    case FileCategory::other:
        break;
    }
    return 0.62;
}

} // namespace

namespace SpaceHeader {

QStringList crumbs(const ScanResult &result, const std::vector<DirNodePtr> &stack)
{
    QStringList out;
    if (!result.root)
        return out;
    out << Fmt::displayName(result.root->path());
    for (const DirNodePtr &node : stack)
        out << Paths::toDisplay(node->name);
    return out;
}

QString subtitle(const DirNode &node, bool atRoot, double duration)
{
    if (!atRoot)
        return TileText::abbreviateWithTilde(node.path());
    return explorerText(QT_TRANSLATE_NOOP("Explorer", "Scanned %1 in %2"))
        .arg(TileText::abbreviateWithTilde(node.path()), Fmt::duration(duration));
}

QString sizeText(const DirNode &node) { return Fmt::bytes(node.size); }

QString filesText(const DirNode &node)
{
    return explorerText(QT_TRANSLATE_NOOP("Explorer", "%1 files")).arg(QLocale().toString(node.fileCount));
}

QString discoveringTitle(const QByteArray &scanTarget)
{
    if (scanTarget.isEmpty())
        return explorerText(QT_TRANSLATE_NOOP("Explorer", "Reading your disk"));
    return explorerText(QT_TRANSLATE_NOOP("Explorer", "Reading %1")).arg(Fmt::displayName(scanTarget));
}

QString scanPath(const ScanProgress &progress) { return Paths::toDisplay(progress.currentPath); }

QString scanBytesText(qint64 bytes) { return Fmt::bytes(bytes); }

QString scanCountsText(const ScanProgress &progress)
{
    return explorerText(QT_TRANSLATE_NOOP("Explorer", "%1 files · %2 found"))
        .arg(QLocale().toString(progress.filesScanned), QLocale().toString(qint64(progress.discovered.size())));
}

QVariantList composition(const ScanResult &result)
{
    struct Part {
        FileCategory category;
        qint64 size;
    };
    QList<Part> parts;
    for (const FileCategory c : FileCategory::allCases) {
        const CategoryTotal t = result.total(c);
        if (t.size > 0)
            parts.append({c, t.size});
    }
    std::stable_sort(parts.begin(), parts.end(), [](const Part &a, const Part &b) { return a.size > b.size; });
    QVariantList out;
    for (const Part &p : parts)
        out << QVariantMap{
            {QStringLiteral("category"), p.category.id()},
            {QStringLiteral("title"), p.category.title()},
            {QStringLiteral("size"), double(p.size)},
            {QStringLiteral("hue"), categoryHue(p.category)},
            {QStringLiteral("help"), QStringLiteral("%1: %2").arg(p.category.title(), Fmt::bytes(p.size))},
        };
    return out;
}

QVariantList segmentWidths(const QVariantList &composition, double width)
{
    QList<qint64> sizes;
    for (const QVariant &part : composition)
        sizes << qint64(part.toMap().value(QStringLiteral("size")).toDouble());
    QVariantList out;
    for (const double w : TileText::segmentWidths(sizes, width))
        out << w;
    return out;
}

int legendCount(const QVariantList &entryWidths, double width, double gap)
{
    QList<double> widths;
    for (const QVariant &w : entryWidths)
        widths << w.toDouble();
    return TileText::legendCount(widths, width, gap);
}

QVariantList recents(const QByteArrayList &recents)
{
    QVariantList out;
    for (qsizetype i = 0; i < recents.size() && i < 3; ++i)
        out << QVariantMap{{QStringLiteral("path"), Paths::toText(recents[i])},
                           {QStringLiteral("title"), Fmt::displayName(recents[i])},
                           {QStringLiteral("help"), Paths::toDisplay(recents[i])}};
    return out;
}

} // namespace SpaceHeader
