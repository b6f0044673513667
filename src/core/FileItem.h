// One listed file (or package counted as one file) of a scan. A value: copies
// are cheap (the path bytes are shared) and may be handed to workers. Identity
// is `id` alone.

#pragma once

#include "FileCategory.h"

#include <QByteArray>
#include <QHashFunctions>

#include <memory>

class DirNode;

// `parent` is a weak link: it reads as absent once the tree it belongs to is
// gone, so a copy that outlives its ScanResult never dangles.
struct FileItem {
    qint64 id = 0;
    QByteArray path;        // exact bytes, see Paths.h
    QByteArray name;        // last component
    qint64 size = 0;        // allocated bytes (512 x st_blocks); for a package the sum inside
    qint64 logicalSize = 0; // st_size; for a package the sum inside
    double modified = 0;    // seconds since the epoch
    double accessed = 0;
    FileCategory category = FileCategory::other;
    bool isPackage = false;
    std::weak_ptr<DirNode> parent;

    std::shared_ptr<DirNode> parentNode() const { return parent.lock(); }

    friend bool operator==(const FileItem &a, const FileItem &b) { return a.id == b.id; }
};

inline size_t qHash(const FileItem &item, size_t seed = 0) { return qHash(item.id, seed); }

template <>
struct std::hash<FileItem> {
    std::size_t operator()(const FileItem &item) const noexcept { return std::hash<qint64>()(item.id); }
};
