#include "TileList.h"

#include "NameKey.h"
#include "NameSearch.h"
#include "SpaceView.h"

#include "core/NameOrder.h"
#include "core/Paths.h"
#include "removal/CleanQueue.h"

#include <QHash>

#include <algorithm>
#include <cstring>
#include <string_view>

TileList::TileList(QList<ExplorerTile> tiles) : m_tiles(std::move(tiles)) {}

// Every step reads the folder's entries in their own order, which is where
// they lie in memory; only the final sort moves the rows around.
TileList TileList::ofFolder(const DirNodePtr &folder, const QList<ExplorerEntry> &small, const ExplorerQuery &query,
                            const CleanQueue &queue)
{
    TileList list;
    list.m_folder = folder;
    list.m_small = small;
    const std::vector<DirNodePtr> &children = folder->children;
    const std::vector<FileItem> &files = folder->files;
    list.m_smallBase = quint32(children.size() + files.size());
    std::vector<Row> &rows = list.m_rows;
    rows.reserve(children.size() + files.size() + size_t(small.size()));
    // An empty folder isn't shown, unless something in it couldn't be read:
    // then its size isn't known to be zero.
    for (size_t i = 0; i < children.size(); ++i)
        if (children[i]->size > 0 || children[i]->unreadableBelow > 0)
            rows.push_back({children[i]->size, quint32(i)});
    for (size_t i = 0; i < files.size(); ++i)
        rows.push_back({files[i].size, quint32(children.size() + i)});

    // The heavy: of the entries of at least 1 GB and 15 % of the folder that
    // aren't grime, the three largest (the first at equal size).
    const double limit = double(folder->size) * 0.15;
    std::vector<Row *> candidates;
    for (Row &row : rows)
        if (row.size >= 1'000'000'000 && double(row.size) >= limit)
            candidates.push_back(&row);
    std::sort(candidates.begin(), candidates.end(), [](const Row *a, const Row *b) {
        return a->size != b->size ? a->size > b->size : a->source < b->source;
    });
    int heavy = 0;
    for (const Row *row : candidates) {
        if (heavy == 3)
            break;
        if (list.conditionOf(*row) == ExplorerTile::Condition::stained)
            continue;
        row->condition = 1 + quint8(ExplorerTile::Condition::bloated);
        ++heavy;
    }

    for (qsizetype i = 0; i < small.size(); ++i)
        rows.push_back({small[i].size, list.m_smallBase + quint32(i)});

    if (!query.search.isEmpty() || query.filter != ExplorerFilter::all)
        std::erase_if(rows, [&](const Row &row) { return !list.matches(row, query, queue); });

    switch (query.sort) {
    case ExplorerSort::size: {
        const auto before = [&list](const Row &a, const Row &b) {
            if (a.size != b.size)
                return a.size > b.size;
            return list.inTakenOrder(a, b);
        };
        // A finished scan has its folders and files sorted already.
        if (!std::is_sorted(rows.begin(), rows.end(), before))
            std::sort(rows.begin(), rows.end(), before);
        break;
    }
    case ExplorerSort::name:
        list.sortByName();
        break;
    case ExplorerSort::kind:
        list.sortByKind();
        break;
    }
    rows.shrink_to_fit();
    return list;
}

TileList::Source TileList::kindOf(const Row &row) const
{
    if (row.source < m_folder->children.size())
        return Source::child;
    return row.source < m_smallBase ? Source::file : Source::small;
}

ExplorerEntry TileList::entryOf(const Row &row) const
{
    const size_t children = m_folder->children.size();
    switch (kindOf(row)) {
    case Source::child:
        return ExplorerEntry::fromNode(m_folder->children[row.source], riskOf(row));
    case Source::file:
        return ExplorerEntry::fromFile(m_folder->files[row.source - children], riskOf(row));
    case Source::small:
        break;
    }
    const qsizetype at = qsizetype(row.source - m_smallBase);
    return at < m_small.size() ? m_small[at] : ExplorerEntry();
}

const Risk &TileList::riskOf(const Row &row) const
{
    if (row.risk == 0) {
        Risk risk;
        const size_t children = m_folder->children.size();
        switch (kindOf(row)) {
        case Source::child:
            risk = ExplorerEntry::assess(*m_folder->children[row.source]);
            break;
        case Source::file:
            risk = ExplorerEntry::assess(m_folder->files[row.source - children]);
            break;
        case Source::small: {
            const qsizetype at = qsizetype(row.source - m_smallBase);
            risk = at < m_small.size() ? m_small[at].risk : Risk();
            break;
        }
        }
        // Most rows share a few verdicts: the first ones found are kept once
        // each, and looked for before keeping another.
        const auto shared = m_risks.begin() + qsizetype(std::min<size_t>(m_risks.size(), 64));
        const auto known = std::find(m_risks.begin(), shared, risk);
        if (known != shared) {
            row.risk = quint32(known - m_risks.begin()) + 1;
        } else {
            m_risks.push_back(std::move(risk));
            row.risk = quint32(m_risks.size());
        }
    }
    return m_risks[row.risk - 1];
}

ExplorerTile::Condition TileList::conditionOf(const Row &row) const
{
    if (row.condition == 0) {
        const bool grime = SpaceView::isGrime(entryOf(row));
        row.condition = 1 + quint8(grime ? ExplorerTile::Condition::stained : ExplorerTile::Condition::clean);
    }
    return ExplorerTile::Condition(row.condition - 1);
}

QString TileList::nameOf(const Row &row) const
{
    switch (kindOf(row)) {
    case Source::child:
        // A child of the home folder may go by the desktop's name for it.
        return entryOf(row).name;
    case Source::file:
        return Paths::toDisplay(m_folder->files[row.source - m_folder->children.size()].name);
    case Source::small:
        break;
    }
    return entryOf(row).name;
}

QByteArray TileList::idOf(const Row &row) const
{
    const size_t children = m_folder->children.size();
    switch (kindOf(row)) {
    case Source::child:
        return m_folder->children[row.source]->path();
    case Source::file:
        return m_folder->files[row.source - children].path;
    case Source::small:
        break;
    }
    const qsizetype at = qsizetype(row.source - m_smallBase);
    return at < m_small.size() ? m_small[at].id : QByteArray();
}

bool TileList::isDirectory(const Row &row) const
{
    switch (kindOf(row)) {
    case Source::child:
        return true;
    case Source::file:
        return false;
    case Source::small:
        break;
    }
    return entryOf(row).isDirectory;
}

bool TileList::matches(const Row &row, const ExplorerQuery &query, const CleanQueue &queue) const
{
    if (!query.search.isEmpty() && !NameSearch::contains(nameOf(row), query.search))
        return false;
    switch (query.filter) {
    case ExplorerFilter::all:
        return true;
    case ExplorerFilter::folders:
        return isDirectory(row);
    case ExplorerFilter::files:
        return !isDirectory(row);
    case ExplorerFilter::stained:
        return conditionOf(row) == ExplorerTile::Condition::stained;
    case ExplorerFilter::bloated:
        return conditionOf(row) == ExplorerTile::Condition::bloated;
    case ExplorerFilter::selected:
        return queue.contains(idOf(row));
    }
    return true;
}

namespace {

// What Paths::toDisplay shows as it is: printable ASCII but the backslash.
bool shownAsIs(QByteArrayView name)
{
    for (const char c : name)
        if (c < 0x20 || c > 0x7E || c == '\\')
            return false;
    return true;
}

// Eight bytes of a key from `from` on, big-endian, zero-padded. Where these
// differ, so do the keys, the same way round.
quint64 keyPart(const char *key, quint32 length, quint32 from)
{
    quint64 part = 0;
    for (quint32 b = from; b < from + 8; ++b)
        part = (part << 8) | (b < length ? quint8(key[b]) : 0);
    return part;
}

} // namespace

bool TileList::inTakenOrder(const Row &a, const Row &b) const
{
    const bool smallA = a.source >= m_smallBase;
    const bool smallB = b.source >= m_smallBase;
    if (smallA != smallB)
        return smallB;
    if (!smallA && a.size != b.size)
        return a.size > b.size;
    return a.source < b.source;
}

// On keys made once per name (see NameKey), ties in the order taken. Each
// key's first sixteen bytes sit beside its row, so that most comparisons look
// no further.
void TileList::sortByName()
{
    struct Keyed {
        quint64 head;
        quint64 next;
        quint32 offset;
        quint32 length;
        quint32 index;
    };
    std::vector<Keyed> keyed(m_rows.size());
    QByteArray keys;
    keys.reserve(qsizetype(m_rows.size()) * 24);
    bool allKeyed = true;
    for (size_t i = 0; i < m_rows.size() && allKeyed; ++i) {
        const Row &row = m_rows[i];
        const qsizetype offset = keys.size();
        if (kindOf(row) == Source::file) {
            const QByteArray &name = m_folder->files[row.source - m_folder->children.size()].name;
            allKeyed =
                shownAsIs(name) ? NameKey::append(keys, QLatin1String(name)) : NameKey::append(keys, nameOf(row));
        } else {
            allKeyed = NameKey::append(keys, nameOf(row));
        }
        keyed[i] = {0, 0, quint32(offset), quint32(keys.size() - offset), quint32(i)};
    }
    std::vector<quint32> order(m_rows.size());
    if (allKeyed) {
        const char *const bytes = keys.constData();
        for (Keyed &k : keyed) {
            k.head = keyPart(bytes + k.offset, k.length, 0);
            k.next = keyPart(bytes + k.offset, k.length, 8);
        }
        std::sort(keyed.begin(), keyed.end(), [this, bytes](const Keyed &a, const Keyed &b) {
            if (a.head != b.head)
                return a.head < b.head;
            if (a.next != b.next)
                return a.next < b.next;
            const int c =
                std::string_view(bytes + a.offset, a.length).compare(std::string_view(bytes + b.offset, b.length));
            return c != 0 ? c < 0 : inTakenOrder(m_rows[a.index], m_rows[b.index]);
        });
        for (size_t i = 0; i < keyed.size(); ++i)
            order[i] = keyed[i].index;
    } else {
        // The collator's own keys, made once per name.
        const QCollator &collator = NameOrder::collator();
        std::vector<QCollatorSortKey> sortKeys;
        sortKeys.reserve(m_rows.size());
        for (const Row &row : m_rows)
            sortKeys.push_back(collator.sortKey(nameOf(row)));
        for (size_t i = 0; i < order.size(); ++i)
            order[i] = quint32(i);
        // Merging never reads past the ends, whatever the names.
        std::stable_sort(order.begin(), order.end(), [&](quint32 a, quint32 b) {
            const int c = sortKeys[a].compare(sortKeys[b]);
            return c != 0 ? c < 0 : inTakenOrder(m_rows[a], m_rows[b]);
        });
    }
    std::vector<Row> sorted;
    sorted.reserve(m_rows.size());
    for (const quint32 i : order)
        sorted.push_back(m_rows[i]);
    m_rows = std::move(sorted);
}

// Folders first, then by category title, without category last; at the same
// kind largest first, then in the order taken.
void TileList::sortByKind()
{
    QHash<QString, quint32> kindRank;
    std::vector<QString> kindOfRow(m_rows.size());
    QString categoryText[16];
    for (size_t i = 0; i < m_rows.size(); ++i) {
        const Row &row = m_rows[i];
        switch (kindOf(row)) {
        case Source::child:
            kindOfRow[i] = QString(QLatin1String(""));
            break;
        case Source::file: {
            const FileCategory category = m_folder->files[row.source - m_folder->children.size()].category;
            QString &text = categoryText[int(FileCategory::Value(category)) & 15];
            if (text.isNull())
                text = category.title();
            kindOfRow[i] = text;
            break;
        }
        case Source::small:
            kindOfRow[i] = ExplorerSort::kindText(entryOf(row));
            break;
        }
        kindRank.insert(kindOfRow[i], 0);
    }
    QStringList kinds = kindRank.keys();
    std::sort(kinds.begin(), kinds.end());
    for (qsizetype k = 0; k < kinds.size(); ++k)
        kindRank[kinds[k]] = quint32(k);

    std::vector<std::pair<quint32, quint32>> keyed(m_rows.size()); // kind, row
    for (size_t i = 0; i < m_rows.size(); ++i)
        keyed[i] = {kindRank.value(kindOfRow[i]), quint32(i)};
    std::sort(keyed.begin(), keyed.end(), [this](const auto &a, const auto &b) {
        if (a.first != b.first)
            return a.first < b.first;
        const Row &x = m_rows[a.second];
        const Row &y = m_rows[b.second];
        return x.size != y.size ? x.size > y.size : inTakenOrder(x, y);
    });
    std::vector<Row> sorted;
    sorted.reserve(m_rows.size());
    for (const auto &k : keyed)
        sorted.push_back(m_rows[k.second]);
    m_rows = std::move(sorted);
}

ExplorerTile TileList::at(qsizetype row) const
{
    if (!m_folder)
        return m_tiles.at(row);
    auto &slot = m_made[size_t(row) % m_made.size()];
    if (slot && slot->first == row)
        return slot->second;
    const Row &r = m_rows[size_t(row)];
    ExplorerEntry entry = entryOf(r);
    const ExplorerTile::Condition condition = conditionOf(r);
    const int seed = SpaceView::seed(entry.id);
    slot.emplace(row, ExplorerTile{std::move(entry), condition, seed});
    return slot->second;
}

QByteArray TileList::id(qsizetype row) const
{
    if (!m_folder)
        return m_tiles.at(row).id();
    return idOf(m_rows[size_t(row)]);
}

qint64 TileList::bytes(qsizetype row) const
{
    if (!m_folder)
        return m_tiles.at(row).size();
    return m_rows[size_t(row)].size;
}
