// The folders a walk never enters, compared with full paths as the walk spells
// them. A handful of entries, so a linear test by length first is cheaper than
// hashing each folder's path.

#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QByteArrayView>

#include <vector>

class SkipSet
{
public:
    SkipSet() = default;
    explicit SkipSet(const QByteArrayList &paths);

    bool contains(QByteArrayView path) const;

    // No path longer than this can be contained, however its text is composed:
    // canonical composition changes a text's length by at most a factor of three
    // either way, on both sides of the comparison.
    qsizetype longestMatch() const { return m_longest; }

private:
    std::vector<QByteArray> m_exact;
    std::vector<QByteArray> m_comparable;
    qsizetype m_longest = 0;
};
