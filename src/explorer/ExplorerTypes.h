#pragma once

#include "core/DirNode.h"
#include "core/DiscoveredEntry.h"
#include "core/FileCategory.h"
#include "core/FileItem.h"
#include "removal/CleanItem.h"
#include "safety/Risk.h"

#include <QByteArray>
#include <QList>
#include <QSet>
#include <QString>

#include <array>
#include <optional>
#include <variant>

// One file or folder as the Space explorer knows it. A value; two entries are
// equal when id, size and measuring are (a changed risk text is no change).
struct ExplorerEntry {
    QByteArray id; // absolute path, exact bytes
    QString name;  // shown on the tile
    qint64 size = 0;
    bool isDirectory = false;
    QString artifactKind; // null unless a developer artefact
    bool measuring = false;
    std::optional<qint64> fileCount;
    std::optional<FileCategory> category; // absent for folders
    DirNodePtr node;                      // set exactly when the entry can be entered
    std::optional<FileItem> file;         // set when taken from the scan's file list
    Risk risk;

    bool hasArtifactKind() const { return !artifactKind.isNull(); }

    // The ten lower-case folder names that read as grime: "caches", "cache", ...
    static const QSet<QString> &cacheNames();

    // The entry of a scanned folder. A child of the home folder is named as the
    // desktop names it (the localised title of Documents, Downloads, ...).
    static ExplorerEntry fromNode(const DirNodePtr &node);
    // A direct child of the root seen live during a scan; `risk` when its
    // verdict is already known.
    static ExplorerEntry fromDiscovered(const DiscoveredEntry &discovered, const std::optional<Risk> &risk = {});
    // A listed file of the scan.
    static ExplorerEntry fromFile(const FileItem &file);
    // A loose small file read from disk on demand.
    static ExplorerEntry smallFile(const QByteArray &path, qint64 size);

    // The selection item for this entry, from the Space area.
    CleanItem cleanItem() const;

    friend bool operator==(const ExplorerEntry &a, const ExplorerEntry &b)
    {
        return a.id == b.id && a.size == b.size && a.measuring == b.measuring;
    }
};

// What a placeholder tile stands for; each kind shows the icon of a made-up path.
class PlaceholderKind
{
public:
    enum Value : quint8 { folder, document, text, movie, image, archive, app, diskImage };
    constexpr PlaceholderKind(Value value = folder) : m_value(value) {}
    constexpr operator Value() const { return m_value; }
    static const std::array<PlaceholderKind, 8> allCases;
    QByteArray path() const; // "/placeholder", "/placeholder.pdf", ...

private:
    Value m_value;
};

inline constexpr std::array<PlaceholderKind, 8> PlaceholderKind::allCases = {
    folder, document, text, movie, image, archive, app, diskImage,
};

// The welcome picture: 24 kinds, and which positions are stained or bloated.
namespace Placeholders {
extern const std::array<PlaceholderKind, 24> pattern;
extern const QSet<int> stained;
extern const QSet<int> bloated;
} // namespace Placeholders

// One tile: a placeholder or an entry, with its condition and a seed 0...996
// that varies its look.
struct ExplorerTile {
    enum class Condition : quint8 { clean, stained, bloated };

    std::variant<PlaceholderKind, ExplorerEntry> content;
    Condition condition = Condition::clean;
    int seed = 0;

    bool isPlaceholder() const { return std::holds_alternative<PlaceholderKind>(content); }
    const ExplorerEntry *entry() const { return std::get_if<ExplorerEntry>(&content); }
    PlaceholderKind placeholder() const
    {
        const auto *kind = std::get_if<PlaceholderKind>(&content);
        return kind ? *kind : PlaceholderKind(PlaceholderKind::folder);
    }
    // The entry's id, or "placeholder-" + seed.
    QByteArray id() const;
    qint64 size() const { return entry() ? entry()->size : 0; }

    static QString conditionName(Condition condition); // "clean", "stained", "bloated"
};

// The filter chips of the toolbar.
class ExplorerFilter
{
public:
    enum Value : quint8 { all, folders, files, stained, bloated, selected };
    constexpr ExplorerFilter(Value value = all) : m_value(value) {}
    constexpr operator Value() const { return m_value; }
    static const std::array<ExplorerFilter, 6> allCases;
    QString rawValue() const;
    static std::optional<ExplorerFilter> fromRawValue(QStringView raw);
    QString title() const; // "All", "Folders", "Files", "Grime", "Heavy", "Selected"

private:
    Value m_value;
};

inline constexpr std::array<ExplorerFilter, 6> ExplorerFilter::allCases = {
    all, folders, files, stained, bloated, selected,
};

// The sort orders of the toolbar menu.
class ExplorerSort
{
public:
    enum Value : quint8 { size, name, kind };
    constexpr ExplorerSort(Value value = size) : m_value(value) {}
    constexpr operator Value() const { return m_value; }
    static const std::array<ExplorerSort, 3> allCases;
    QString rawValue() const;
    static std::optional<ExplorerSort> fromRawValue(QStringView raw);
    QString title() const; // "Size", "Name", "Kind"

    // True when tile a goes before tile b; false if either is a placeholder.
    // The name order ignores case and compares runs of digits by value.
    bool order(const ExplorerTile &a, const ExplorerTile &b) const;
    // Sorts stably by order().
    void sortTiles(QList<ExplorerTile> &tiles) const;

    // The text the kind order groups by: empty for a folder, the category title,
    // or "~" without category.
    static QString kindText(const ExplorerEntry &entry);
    // Names as people sort them: "file2" before "File10". Below 0, 0 or above.
    static int compareNames(QStringView a, QStringView b);

private:
    Value m_value;
};

inline constexpr std::array<ExplorerSort, 3> ExplorerSort::allCases = {size, name, kind};

// Icons or list; kept under the preference "spaceLayout".
class ExplorerLayout
{
public:
    enum Value : quint8 { icons, list };
    constexpr ExplorerLayout(Value value = icons) : m_value(value) {}
    constexpr operator Value() const { return m_value; }
    QString rawValue() const;
    static std::optional<ExplorerLayout> fromRawValue(QStringView raw);
    QString title() const; // "Icons", "List"

private:
    Value m_value;
};

// What a memoised tile list was made from. `selection` is 0 unless the filter
// is `selected`; `small` counts the loose small files held for the folder.
struct TileKey {
    const DirNode *node = nullptr;
    int revision = 0;
    QString search;
    ExplorerFilter filter;
    ExplorerSort sort;
    size_t selection = 0;
    int small = 0;

    friend bool operator==(const TileKey &a, const TileKey &b)
    {
        return a.node == b.node && a.revision == b.revision && a.search == b.search && a.filter == b.filter &&
               a.sort == b.sort && a.selection == b.selection && a.small == b.small;
    }
};

// The last tile list of the results mode and the key it was made under. Only
// ever overwritten, never cleared.
class TileMemo
{
public:
    std::optional<TileKey> key;
    QList<ExplorerTile> tiles;
    int builds = 0; // how many times a list was built; for tests and benchmarks
};
