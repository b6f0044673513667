#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

// Small value records of a scan.

// Total of one file category. A package counts once, with its whole size.
struct CategoryTotal {
    qint64 size = 0; // allocated bytes
    qint64 count = 0;
    friend bool operator==(const CategoryTotal &, const CategoryTotal &) = default;
};

// A folder recognised as rebuildable developer output.
struct DevArtifact {
    QByteArray path;
    QString kind; // label of the matching rule
    qint64 size = 0;
    qint64 fileCount = 0;
    friend bool operator==(const DevArtifact &, const DevArtifact &) = default;
};

inline size_t qHash(const DevArtifact &a, size_t seed = 0)
{
    return qHashMulti(seed, a.path, a.kind, a.size, a.fileCount);
}

// A direct child of the scanned root as seen live during the scan.
struct DiscoveredEntry {
    QByteArray path;
    QByteArray name;
    qint64 size = 0;          // bytes so far; grows while measuring
    bool isDirectory = false; // false for files and for packages counted as files
    QString artifactKind;     // null when not an artefact
    bool measuring = false;   // true until its subtree is finished
    friend bool operator==(const DiscoveredEntry &, const DiscoveredEntry &) = default;
};

// Snapshot published while a scan runs.
struct ScanProgress {
    qint64 filesScanned = 0;
    qint64 bytesScanned = 0; // allocated bytes
    QByteArray currentPath;
    QList<DiscoveredEntry> discovered; // in the order found
    friend bool operator==(const ScanProgress &, const ScanProgress &) = default;
};

// The measurement of one path.
struct DiskUsage {
    qint64 size = 0;  // allocated bytes
    qint64 items = 0; // files
    bool exists = false;
    bool readable = false;
    friend bool operator==(const DiskUsage &, const DiskUsage &) = default;
};
