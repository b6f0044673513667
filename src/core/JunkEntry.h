// One thing inside a junk location: a file or folder that a clean would remove,
// with its measured size. A plain value, compared and hashed over all fields; any
// thread.

#pragma once

#include <QByteArray>
#include <QHashFunctions>

struct JunkEntry {
    QByteArray path; // exact bytes, see Paths.h
    qint64 size = 0; // allocated bytes
    bool isDirectory = false;
    friend bool operator==(const JunkEntry &, const JunkEntry &) = default;
};

inline size_t qHash(const JunkEntry &e, size_t seed = 0) { return qHashMulti(seed, e.path, e.size, e.isDirectory); }
