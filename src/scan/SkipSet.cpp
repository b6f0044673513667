#include "SkipSet.h"

#include "core/Paths.h"

#include <algorithm>

SkipSet::SkipSet(const QByteArrayList &paths)
{
    for (const QByteArray &path : paths) {
        m_exact.push_back(path);
        if (Paths::isAscii(path)) {
            m_longest = std::max(m_longest, path.size());
        } else {
            m_comparable.push_back(Paths::comparable(path));
            m_longest = std::max(m_longest, 9 * path.size());
        }
    }
}

bool SkipSet::contains(QByteArrayView path) const
{
    if (path.size() > m_longest)
        return false;
    for (const QByteArray &entry : m_exact)
        if (entry.size() == path.size() && entry == path)
            return true;
    // Canonical equivalence only matters when both sides hold non-ASCII text.
    if (m_comparable.empty() || Paths::isAscii(path))
        return false;
    const QByteArray form = Paths::comparable(path);
    return std::find(m_comparable.begin(), m_comparable.end(), form) != m_comparable.end();
}
