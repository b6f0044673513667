#include "ExplorerSort.h"

#include "core/NameOrder.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

QString explorerText(const char *text) { return QCoreApplication::translate("Explorer", text); }

} // namespace

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
        return NameOrder::compare(x->name, y->name) < 0;
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
