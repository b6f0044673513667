// The settings one scan works with, fixed at its start and handed by value to
// the scanning worker.

#pragma once

#include <QByteArrayList>

struct ScanOptions {
    // Allocated size in bytes from which a file gets a FileItem; smaller files
    // still count towards the sizes. 0 behaves as 1.
    qint64 minTrackedSize = 1000000;
    // A directory with a package extension counts as one file.
    bool treatPackagesAsFiles = true;
    // Names that begin with "." are left out.
    bool skipHiddenFiles = false;
    // Folders never entered (exact bytes).
    QByteArrayList excludedPaths;

    // A snapshot of the user's preferences.
    static ScanOptions current();

    friend bool operator==(const ScanOptions &, const ScanOptions &) = default;
};
