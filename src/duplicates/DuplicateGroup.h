// One set of files whose whole contents are identical, as proven by their
// SHA-256 digests. A value; any thread.

#pragma once

#include "core/FileItem.h"

#include <QString>

#include <vector>

struct DuplicateGroup {
    // The 64-character lower-case hexadecimal SHA-256 of the whole content;
    // unique among the groups of one search.
    QString id;
    // The allocated size of one member (members of a group may differ here:
    // sparse files and clones allocate less than their length).
    qint64 size = 0;
    // At least two when found, newest first. Edited after a removal.
    std::vector<FileItem> files;

    // What removing all copies but one would free: (files - 1, at least 0) x size.
    // Saturates at the limits of qint64 instead of wrapping.
    qint64 reclaimable() const;

    friend bool operator==(const DuplicateGroup &, const DuplicateGroup &) = default;
};

// Sum of two byte counts, held at the limits of qint64 instead of wrapping.
qint64 saturatingAdd(qint64 a, qint64 b);
