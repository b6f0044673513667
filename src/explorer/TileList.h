// A tile list of the Space explorer in the order shown: the welcome or
// discovering picture held as tiles, or the tiles of one folder of a scan
// result made as they are asked for. Owned by the model (through TileMemo);
// main thread only.

#pragma once

#include "ExplorerQuery.h"
#include "ExplorerTile.h"

#include "core/DirNode.h"

#include <QByteArray>
#include <QList>

#include <array>
#include <cstddef>
#include <iterator>
#include <optional>
#include <vector>

class CleanQueue;

// A folder of 200,000 files is one row of 24 bytes per tile shown: its size and
// where its entry lies (a child folder, a listed file or a loose small file).
// The entry of a row, its verdict and its condition are worked out the first
// time the row is read; the verdict and condition are kept with the row, the
// tiles in a small cache of the rows read last. The list points into its
// folder, which must not change under it: the model builds a new list for each
// revision of the result (see TileKey).
class TileList
{
public:
    TileList() = default;
    // A list of ready tiles: the welcome and discovering pictures.
    explicit TileList(QList<ExplorerTile> tiles);

    // The tiles of `folder`: its non-empty folders (and those that couldn't be
    // read, wholly or in part) and its files, largest first (folders first at
    // equal size), then `small`; grime is stained, and of the rest the three
    // largest of at least 1 GB and 15 % of the folder are bloated (`small`
    // never are). Then those that match `query` (see SpaceView::matches), in
    // its order, stably.
    static TileList ofFolder(const DirNodePtr &folder, const QList<ExplorerEntry> &small, const ExplorerQuery &query,
                             const CleanQueue &queue);

    qsizetype size() const { return m_folder ? qsizetype(m_rows.size()) : m_tiles.size(); }
    bool isEmpty() const { return size() == 0; }

    // The tile at `row`, 0 <= row < size().
    ExplorerTile at(qsizetype row) const;
    ExplorerTile operator[](qsizetype row) const { return at(row); }
    // What syncing rows and weighing them ask for every row, without making
    // its tile.
    QByteArray id(qsizetype row) const;
    qint64 bytes(qsizetype row) const;

    class const_iterator
    {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = ExplorerTile;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = ExplorerTile;

        const_iterator(const TileList *list, qsizetype row) : m_list(list), m_row(row) {}
        ExplorerTile operator*() const { return m_list->at(m_row); }
        const_iterator &operator++()
        {
            ++m_row;
            return *this;
        }
        friend bool operator==(const const_iterator &a, const const_iterator &b) { return a.m_row == b.m_row; }

    private:
        const TileList *m_list;
        qsizetype m_row;
    };
    const_iterator begin() const { return {this, 0}; }
    const_iterator end() const { return {this, size()}; }

private:
    // `source` counts the folder's children, then its files, then `m_small`.
    // `risk` is 0 until assessed, then 1 + its place in m_risks; `condition`
    // is 0 until known, then 1 + the Condition.
    struct Row {
        qint64 size = 0;
        quint32 source = 0;
        mutable quint32 risk = 0;
        mutable quint8 condition = 0;
    };
    enum class Source : quint8 { child, file, small };

    Source kindOf(const Row &row) const;
    ExplorerEntry entryOf(const Row &row) const;
    const Risk &riskOf(const Row &row) const;
    ExplorerTile::Condition conditionOf(const Row &row) const;
    QString nameOf(const Row &row) const;
    QByteArray idOf(const Row &row) const;
    bool isDirectory(const Row &row) const;
    bool matches(const Row &row, const ExplorerQuery &query, const CleanQueue &queue) const;
    // The order rows are taken in before sorting: the folder's own entries
    // largest first (in the folder's order at equal size), then the small
    // files in theirs.
    bool inTakenOrder(const Row &a, const Row &b) const;
    void sortByName();
    void sortByKind();

    QList<ExplorerTile> m_tiles; // without a folder
    DirNodePtr m_folder;
    QList<ExplorerEntry> m_small;
    quint32 m_smallBase = 0; // the source of the first small file
    std::vector<Row> m_rows;
    // Verdicts, each kept once.
    mutable std::vector<Risk> m_risks;
    // The tiles made last, by row modulo the size.
    mutable std::array<std::optional<std::pair<qsizetype, ExplorerTile>>, 64> m_made;
};
