#include "SpaceView.h"

#include "NameSearch.h"
#include "PlaceholderKind.h"

#include "removal/CleanQueue.h"

#include <QHash>

#include <algorithm>

namespace SpaceView {

Mode mode(bool isScanning, const ScanResultPtr &result)
{
    if (isScanning)
        return Mode::discovering;
    return result ? Mode::results : Mode::welcome;
}

QString modeName(Mode mode)
{
    switch (mode) {
    case Mode::discovering:
        return QStringLiteral("discovering");
    case Mode::results:
        return QStringLiteral("results");
    case Mode::welcome:
        break;
    }
    return QStringLiteral("welcome");
}

bool isGrime(const ExplorerEntry &entry)
{
    const Risk::Level level = entry.risk.level;
    if (level == Risk::Level::safe)
        return true;
    if (level == Risk::Level::normal && entry.hasArtifactKind())
        return true;
    // The longest cache name has 11 characters: longer names need no folding.
    if (level == Risk::Level::normal && entry.name.size() <= 11 &&
        ExplorerEntry::cacheNames().contains(entry.name.toLower()))
        return true;
    if ((level == Risk::Level::normal || level == Risk::Level::caution) && entry.category &&
        *entry.category == FileCategory::diskImage)
        return true;
    return false;
}

int seed(const QByteArray &id) { return int(qHash(id) % 997u); }

QList<ExplorerTile> mark(const QList<ExplorerEntry> &entries, qint64 total)
{
    return mark(QList<ExplorerEntry>(entries), total);
}

QList<ExplorerTile> mark(QList<ExplorerEntry> &&entries, qint64 total)
{
    const double limit = double(total) * 0.15;
    std::vector<bool> grime(size_t(entries.size()));
    std::vector<qsizetype> candidates;
    for (qsizetype i = 0; i < entries.size(); ++i) {
        const ExplorerEntry &e = entries[i];
        grime[size_t(i)] = isGrime(e);
        if (!grime[size_t(i)] && !e.measuring && e.size >= 1'000'000'000 && double(e.size) >= limit)
            candidates.push_back(i);
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [&](qsizetype a, qsizetype b) { return entries[a].size > entries[b].size; });
    if (candidates.size() > 3)
        candidates.resize(3);

    QList<ExplorerTile> tiles;
    tiles.reserve(entries.size());
    for (qsizetype i = 0; i < entries.size(); ++i) {
        const int tileSeed = seed(entries[i].id);
        ExplorerTile tile{std::move(entries[i]), ExplorerTile::Condition::clean, tileSeed};
        if (grime[size_t(i)])
            tile.condition = ExplorerTile::Condition::stained;
        else if (std::find(candidates.begin(), candidates.end(), i) != candidates.end())
            tile.condition = ExplorerTile::Condition::bloated;
        tiles.append(std::move(tile));
    }
    return tiles;
}

QList<ExplorerTile> welcomeTiles()
{
    QList<ExplorerTile> tiles;
    for (int i = 0; i < int(Placeholders::pattern.size()); ++i) {
        ExplorerTile tile{Placeholders::pattern[size_t(i)], ExplorerTile::Condition::clean, i};
        if (Placeholders::stained.contains(i))
            tile.condition = ExplorerTile::Condition::stained;
        else if (Placeholders::bloated.contains(i))
            tile.condition = ExplorerTile::Condition::bloated;
        tiles.append(tile);
    }
    return tiles;
}

QList<ExplorerTile> discoveringTiles(const ScanProgress &progress, QHash<QByteArray, Risk> *risks)
{
    QList<ExplorerEntry> entries;
    entries.reserve(progress.discovered.size());
    for (const DiscoveredEntry &d : progress.discovered) {
        std::optional<Risk> known;
        if (risks) {
            const auto it = risks->constFind(d.path);
            if (it != risks->constEnd())
                known = *it;
        }
        entries.append(ExplorerEntry::fromDiscovered(d, known));
        if (risks && !known)
            risks->insert(d.path, entries.last().risk);
    }
    QList<ExplorerTile> tiles = mark(std::move(entries), progress.bytesScanned);
    const int n = int(tiles.size());
    const int extra = n < 20 ? 24 - n : 4;
    for (int k = 0; k < extra; ++k) {
        const int i = n + k;
        tiles.append(ExplorerTile{Placeholders::pattern[size_t(i % 24)], ExplorerTile::Condition::clean, i});
    }
    return tiles;
}

bool matches(const ExplorerTile &tile, const ExplorerQuery &query, const CleanQueue &queue)
{
    const ExplorerEntry *e = tile.entry();
    if (!e)
        return false;
    if (!query.search.isEmpty() && !NameSearch::contains(e->name, query.search))
        return false;
    switch (query.filter) {
    case ExplorerFilter::all:
        return true;
    case ExplorerFilter::folders:
        return e->isDirectory;
    case ExplorerFilter::files:
        return !e->isDirectory;
    case ExplorerFilter::stained:
        return tile.condition == ExplorerTile::Condition::stained;
    case ExplorerFilter::bloated:
        return tile.condition == ExplorerTile::Condition::bloated;
    case ExplorerFilter::selected:
        return queue.contains(e->id);
    }
    return true;
}

size_t selectionHash(const CleanQueue &queue)
{
    size_t h = 0;
    for (const CleanItem &item : queue.items())
        h = qHashMulti(h, item.id);
    // Keep 0 for "no selection in the key".
    return h == 0 ? 1 : h;
}

TileKey key(const DirNode *node, int revision, const ExplorerQuery &query, const CleanQueue &queue, int small)
{
    TileKey k;
    k.node = node;
    k.revision = revision;
    k.search = query.search;
    k.filter = query.filter;
    k.sort = query.sort;
    k.selection = query.filter == ExplorerFilter::selected ? selectionHash(queue) : 0;
    k.small = small;
    return k;
}

const TileList &resultTiles(const DirNodePtr &current, int revision, const QList<ExplorerEntry> &small,
                            const ExplorerQuery &query, const CleanQueue &queue, TileMemo &memo)
{
    if (!current) {
        static const TileList none;
        return none;
    }
    const TileKey k = key(current.get(), revision, query, queue, int(small.size()));
    if (memo.key && *memo.key == k)
        return memo.tiles;
    memo.tiles = TileList::ofFolder(current, small, query, queue);
    memo.key = k;
    ++memo.builds;
    return memo.tiles;
}

} // namespace SpaceView
