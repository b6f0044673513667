// A direct child of the scanned root as seen live during the scan. A value,
// copied from the scanning worker to the main thread inside a ScanProgress.

#pragma once

#include <QByteArray>
#include <QString>

struct DiscoveredEntry {
    QByteArray path;
    QByteArray name;
    qint64 size = 0;          // bytes so far; grows while measuring
    bool isDirectory = false; // false for files and for packages counted as files
    QString artifactKind;     // null when not an artefact
    bool measuring = false;   // true until its subtree is finished
    friend bool operator==(const DiscoveredEntry &, const DiscoveredEntry &) = default;
};
