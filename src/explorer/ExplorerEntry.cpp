#include "ExplorerEntry.h"

#include "core/Paths.h"
#include "core/Platform.h"
#include "safety/RiskCatalog.h"

#include <QStandardPaths>

namespace {

// The category of a file from the lower-cased extension of its name; `other`
// when the extension is unknown.
FileCategory categoryOfName(const QString &name)
{
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot <= 0 || dot == name.size() - 1)
        return FileCategory::other;
    return FileCategory::classify(name.mid(dot + 1).toLower().toUtf8());
}

// The name the desktop gives a well-known folder of the home folder, or null.
// On Linux a user folder is called by its own name: user-dirs.dirs names it in
// the user's language already, and the breadcrumb shows that same name.
QString homeFolderTitle(const QByteArray &path)
{
    if (Platform::current() != Platform::macOS)
        return {};
    static const QStandardPaths::StandardLocation locations[] = {
        QStandardPaths::DesktopLocation, QStandardPaths::DocumentsLocation, QStandardPaths::DownloadLocation,
        QStandardPaths::MusicLocation,   QStandardPaths::MoviesLocation,    QStandardPaths::PicturesLocation,
    };
    for (const auto location : locations) {
        const QString where = QStandardPaths::writableLocation(location);
        if (!where.isEmpty() && Paths::equal(Paths::fromText(where), path))
            return QStandardPaths::displayName(location);
    }
    return {};
}

} // namespace

const QSet<QString> &ExplorerEntry::cacheNames()
{
    static const QSet<QString> names = {
        QStringLiteral("caches"), QStringLiteral("cache"), QStringLiteral(".cache"), QStringLiteral("logs"),
        QStringLiteral("tmp"),    QStringLiteral("temp"),  QStringLiteral(".tmp"),   QStringLiteral("deriveddata"),
        QStringLiteral(".npm"),   QStringLiteral(".yarn"),
    };
    return names;
}

ExplorerEntry ExplorerEntry::fromNode(const DirNodePtr &node, const std::optional<Risk> &risk)
{
    ExplorerEntry e;
    e.id = node->path();
    e.name = Paths::toDisplay(node->name);
    if (const DirNodePtr parent = node->parentNode()) {
        static const QByteArray home = Platform::homeDirectory();
        if (Paths::equal(parent->path(), home)) {
            const QString title = homeFolderTitle(e.id);
            if (!title.isEmpty())
                e.name = title;
        }
    }
    e.size = node->size;
    e.isDirectory = true;
    e.artifactKind = node->artifactKind;
    e.fileCount = node->fileCount;
    e.node = node;
    e.unreadableBelow = node->unreadableBelow;
    e.readError = node->readError;
    e.partlyRead = node->partlyRead;
    e.risk = risk ? *risk : RiskCatalog::assess(e.id, true, e.hasArtifactKind());
    return e;
}

ExplorerEntry ExplorerEntry::fromDiscovered(const DiscoveredEntry &d, const std::optional<Risk> &risk)
{
    ExplorerEntry e;
    e.id = d.path;
    e.name = Paths::toDisplay(d.name);
    e.size = d.size;
    e.isDirectory = d.isDirectory;
    e.artifactKind = d.artifactKind;
    e.measuring = d.measuring;
    if (!d.isDirectory)
        e.category = categoryOfName(Paths::toText(d.name));
    e.risk = risk ? *risk : RiskCatalog::assess(e.id, d.isDirectory, e.hasArtifactKind());
    return e;
}

ExplorerEntry ExplorerEntry::fromFile(const FileItem &file, const std::optional<Risk> &risk)
{
    ExplorerEntry e;
    e.id = file.path;
    e.name = Paths::toDisplay(file.name);
    e.size = file.size;
    e.category = file.category;
    e.file = file;
    e.risk = risk ? *risk : assess(file);
    return e;
}

Risk ExplorerEntry::assess(const DirNode &node)
{
    return RiskCatalog::assess(node.path(), true, !node.artifactKind.isNull());
}

Risk ExplorerEntry::assess(const FileItem &file)
{
    return RiskCatalog::assess(file.path, file.isPackage, false, file.size);
}

ExplorerEntry ExplorerEntry::smallFile(const QByteArray &path, qint64 size)
{
    ExplorerEntry e;
    e.id = path;
    e.name = Paths::toDisplay(Paths::lastComponent(path));
    e.size = size;
    e.category = categoryOfName(Paths::toText(Paths::lastComponent(path)));
    e.risk = RiskCatalog::assess(path, false, false, size);
    return e;
}

CleanItem ExplorerEntry::cleanItem() const
{
    CleanItem item;
    item.source = CleanItem::Source::space;
    if (node) {
        item.id = node->path();
        item.name = Paths::toDisplay(node->name);
        item.size = node->size;
        item.kind = node->artifactKind.isNull() ? CleanItem::Kind::folder : CleanItem::Kind::artifact;
        item.heat = node->artifactKind.isNull() ? 0.0 : 1.0;
        item.symbolPath = item.id;
    } else if (file) {
        item.id = file->path;
        item.name = Paths::toDisplay(file->name);
        item.size = file->size;
        item.kind = CleanItem::Kind::file;
        item.heat = 0.0;
        item.symbolPath = item.id;
    } else {
        item.id = id;
        item.name = name;
        item.size = size;
        item.kind = !isDirectory        ? CleanItem::Kind::file
                    : hasArtifactKind() ? CleanItem::Kind::artifact
                                        : CleanItem::Kind::folder;
        item.heat = hasArtifactKind() ? 1.0 : 0.0;
        item.symbolPath = id;
    }
    return item;
}
