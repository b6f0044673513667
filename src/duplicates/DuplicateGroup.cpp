#include "DuplicateGroup.h"

#include <limits>

qint64 DuplicateGroup::reclaimable() const
{
    const qint64 copies = files.empty() ? 0 : qint64(files.size()) - 1;
    qint64 product = 0;
    if (__builtin_mul_overflow(copies, size, &product))
        return size < 0 ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
    return product;
}

qint64 saturatingAdd(qint64 a, qint64 b)
{
    qint64 sum = 0;
    if (__builtin_add_overflow(a, b, &sum))
        return b < 0 ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
    return sum;
}
