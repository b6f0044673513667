#include "ExplorerTypes.h"

#include "core/Paths.h"
#include "core/Platform.h"
#include "safety/RiskCatalog.h"

#include <QCoreApplication>
#include <QStandardPaths>

#include <algorithm>

namespace {

QString explorerText(const char *text) { return QCoreApplication::translate("Explorer", text); }

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
QString homeFolderTitle(const QByteArray &path)
{
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

ExplorerEntry ExplorerEntry::fromNode(const DirNodePtr &node)
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
    e.risk = RiskCatalog::assess(e.id, true, e.hasArtifactKind());
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
        e.category = categoryOfName(e.name);
    e.risk = risk ? *risk : RiskCatalog::assess(e.id, d.isDirectory, e.hasArtifactKind());
    return e;
}

ExplorerEntry ExplorerEntry::fromFile(const FileItem &file)
{
    ExplorerEntry e;
    e.id = file.path;
    e.name = Paths::toDisplay(file.name);
    e.size = file.size;
    e.category = file.category;
    e.file = file;
    e.risk = RiskCatalog::assess(file.path, file.isPackage, false, file.size);
    return e;
}

ExplorerEntry ExplorerEntry::smallFile(const QByteArray &path, qint64 size)
{
    ExplorerEntry e;
    e.id = path;
    e.name = Paths::toDisplay(Paths::lastComponent(path));
    e.size = size;
    e.category = categoryOfName(e.name);
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

QByteArray PlaceholderKind::path() const
{
    switch (m_value) {
    case folder:
        return QByteArrayLiteral("/placeholder");
    case document:
        return QByteArrayLiteral("/placeholder.pdf");
    case text:
        return QByteArrayLiteral("/placeholder.txt");
    case movie:
        return QByteArrayLiteral("/placeholder.mov");
    case image:
        return QByteArrayLiteral("/placeholder.png");
    case archive:
        return QByteArrayLiteral("/placeholder.zip");
    case app:
        return QByteArrayLiteral("/placeholder.app");
    case diskImage:
        return QByteArrayLiteral("/placeholder.dmg");
    }
    return QByteArrayLiteral("/placeholder");
}

namespace Placeholders {
using K = PlaceholderKind;
const std::array<PlaceholderKind, 24> pattern = {
    K::folder, K::document, K::movie,   K::folder,    K::image,  K::archive, K::text,     K::folder,
    K::app,    K::image,    K::folder,  K::diskImage, K::movie,  K::text,    K::folder,   K::document,
    K::image,  K::folder,   K::archive, K::text,      K::folder, K::movie,   K::document, K::folder,
};
const QSet<int> stained = {1, 5, 11, 14, 19};
const QSet<int> bloated = {2, 12};
} // namespace Placeholders

QByteArray ExplorerTile::id() const
{
    if (const ExplorerEntry *e = entry())
        return e->id;
    return QByteArrayLiteral("placeholder-") + QByteArray::number(seed);
}

QString ExplorerTile::conditionName(Condition condition)
{
    switch (condition) {
    case Condition::clean:
        return QStringLiteral("clean");
    case Condition::stained:
        return QStringLiteral("stained");
    case Condition::bloated:
        return QStringLiteral("bloated");
    }
    return QStringLiteral("clean");
}

// -- ExplorerFilter ----------------------------------------------------------

QString ExplorerFilter::rawValue() const
{
    static const char *const names[] = {"all", "folders", "files", "stained", "bloated", "selected"};
    return QString::fromLatin1(names[m_value]);
}

std::optional<ExplorerFilter> ExplorerFilter::fromRawValue(QStringView raw)
{
    for (const ExplorerFilter f : allCases)
        if (f.rawValue() == raw)
            return f;
    return std::nullopt;
}

QString ExplorerFilter::title() const
{
    static const char *const titles[] = {
        QT_TRANSLATE_NOOP("Explorer", "All"),   QT_TRANSLATE_NOOP("Explorer", "Folders"),
        QT_TRANSLATE_NOOP("Explorer", "Files"), QT_TRANSLATE_NOOP("Explorer", "Grime"),
        QT_TRANSLATE_NOOP("Explorer", "Heavy"), QT_TRANSLATE_NOOP("Explorer", "Selected"),
    };
    return explorerText(titles[m_value]);
}

// -- ExplorerSort ------------------------------------------------------------

QString ExplorerSort::rawValue() const
{
    static const char *const names[] = {"size", "name", "kind"};
    return QString::fromLatin1(names[m_value]);
}

std::optional<ExplorerSort> ExplorerSort::fromRawValue(QStringView raw)
{
    for (const ExplorerSort s : allCases)
        if (s.rawValue() == raw)
            return s;
    return std::nullopt;
}

QString ExplorerSort::title() const
{
    static const char *const titles[] = {
        QT_TRANSLATE_NOOP("Explorer", "Size"),
        QT_TRANSLATE_NOOP("Explorer", "Name"),
        QT_TRANSLATE_NOOP("Explorer", "Kind"),
    };
    return explorerText(titles[m_value]);
}

QString ExplorerSort::kindText(const ExplorerEntry &entry)
{
    if (entry.isDirectory)
        return QString(QLatin1String(""));
    return entry.category ? entry.category->title() : QStringLiteral("~");
}

int ExplorerSort::compareNames(QStringView a, QStringView b)
{
    qsizetype i = 0;
    qsizetype j = 0;
    while (i < a.size() && j < b.size()) {
        if (a[i].isDigit() && b[j].isDigit()) {
            // Runs of digits compare by value: without leading zeros, the longer
            // run is the larger number, else the first differing digit decides.
            while (i < a.size() && a[i] == u'0' && i + 1 < a.size() && a[i + 1].isDigit())
                ++i;
            while (j < b.size() && b[j] == u'0' && j + 1 < b.size() && b[j + 1].isDigit())
                ++j;
            qsizetype ei = i;
            qsizetype ej = j;
            while (ei < a.size() && a[ei].isDigit())
                ++ei;
            while (ej < b.size() && b[ej].isDigit())
                ++ej;
            if (ei - i != ej - j)
                return ei - i < ej - j ? -1 : 1;
            const int digits = a.sliced(i, ei - i).compare(b.sliced(j, ej - j));
            if (digits != 0)
                return digits < 0 ? -1 : 1;
            i = ei;
            j = ej;
            continue;
        }
        const char32_t x = QChar::toCaseFolded(a[i].unicode());
        const char32_t y = QChar::toCaseFolded(b[j].unicode());
        if (x != y)
            return x < y ? -1 : 1;
        ++i;
        ++j;
    }
    const qsizetype restA = a.size() - i;
    const qsizetype restB = b.size() - j;
    return restA == restB ? 0 : (restA < restB ? -1 : 1);
}

bool ExplorerSort::order(const ExplorerTile &a, const ExplorerTile &b) const
{
    const ExplorerEntry *x = a.entry();
    const ExplorerEntry *y = b.entry();
    if (!x || !y)
        return false;
    switch (m_value) {
    case size:
        return x->size > y->size;
    case name:
        return compareNames(x->name, y->name) < 0;
    case kind: {
        const QString p = kindText(*x);
        const QString q = kindText(*y);
        if (p == q)
            return x->size > y->size;
        return p < q;
    }
    }
    return false;
}

void ExplorerSort::sortTiles(QList<ExplorerTile> &tiles) const
{
    if (m_value == kind) {
        // Kind texts once per entry rather than once per comparison.
        std::vector<std::pair<QString, qsizetype>> keyed;
        keyed.reserve(size_t(tiles.size()));
        for (qsizetype i = 0; i < tiles.size(); ++i)
            keyed.emplace_back(tiles[i].entry() ? kindText(*tiles[i].entry()) : QString(), i);
        std::stable_sort(keyed.begin(), keyed.end(), [&tiles](const auto &p, const auto &q) {
            if (p.first == q.first)
                return tiles[p.second].size() > tiles[q.second].size();
            return p.first < q.first;
        });
        QList<ExplorerTile> sorted;
        sorted.reserve(tiles.size());
        for (const auto &k : keyed)
            sorted.append(std::move(tiles[k.second]));
        tiles = std::move(sorted);
        return;
    }
    std::stable_sort(tiles.begin(), tiles.end(),
                     [this](const ExplorerTile &a, const ExplorerTile &b) { return order(a, b); });
}

// -- ExplorerLayout ----------------------------------------------------------

QString ExplorerLayout::rawValue() const { return m_value == list ? QStringLiteral("list") : QStringLiteral("icons"); }

std::optional<ExplorerLayout> ExplorerLayout::fromRawValue(QStringView raw)
{
    if (raw == u"icons")
        return ExplorerLayout(icons);
    if (raw == u"list")
        return ExplorerLayout(list);
    return std::nullopt;
}

QString ExplorerLayout::title() const
{
    return m_value == list ? explorerText(QT_TRANSLATE_NOOP("Explorer", "List"))
                           : explorerText(QT_TRANSLATE_NOOP("Explorer", "Icons"));
}
