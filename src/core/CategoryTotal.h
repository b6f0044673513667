// Total of one file category in a scan. A package counts once, with its whole
// size. A value; any thread.

#pragma once

#include <QtGlobal>

struct CategoryTotal {
    qint64 size = 0; // allocated bytes
    qint64 count = 0;
    friend bool operator==(const CategoryTotal &, const CategoryTotal &) = default;
};
