// One file or folder as the Space explorer shows it: a value made from a scan
// node, a live discovery, a listed file or a loose small file. Plain data;
// made and read on the main thread.

#pragma once

#include "core/DirNode.h"
#include "core/DiscoveredEntry.h"
#include "core/FileCategory.h"
#include "core/FileItem.h"
#include "removal/CleanItem.h"
#include "safety/Risk.h"

#include <QByteArray>
#include <QSet>
#include <QString>

#include <optional>

// A value; two entries are equal when id, size and measuring are (a changed
// risk text is no change).
struct ExplorerEntry {
    QByteArray id; // absolute path, exact bytes
    QString name;  // shown on the tile
    qint64 size = 0;
    bool isDirectory = false;
    QString artifactKind; // null unless a developer artefact
    bool measuring = false;
    std::optional<qint64> fileCount;
    std::optional<FileCategory> category; // absent for folders
    DirNodePtr node;                      // set exactly when the entry can be entered
    std::optional<FileItem> file;         // set when taken from the scan's file list
    Risk risk;
    // Of a scanned folder: folders at or below it that couldn't be read
    // (wholly or in part), and why this one couldn't (an errno value, 0 when
    // it could; `partlyRead` when some of it was read).
    int unreadableBelow = 0;
    int readError = 0;
    bool partlyRead = false;

    // A folder nothing of which could be listed: its size is unknown.
    bool isUnreadable() const { return readError != 0 && !partlyRead; }

    bool hasArtifactKind() const { return !artifactKind.isNull(); }

    // The ten lower-case folder names that read as grime: "caches", "cache", ...
    static const QSet<QString> &cacheNames();

    // The entry of a scanned folder. A child of the home folder is named as the
    // desktop names it (the localised title of Documents, Downloads, ...).
    // `risk` when its verdict is already known (see assess).
    static ExplorerEntry fromNode(const DirNodePtr &node, const std::optional<Risk> &risk = {});
    // A direct child of the root seen live during a scan; `risk` when its
    // verdict is already known.
    static ExplorerEntry fromDiscovered(const DiscoveredEntry &discovered, const std::optional<Risk> &risk = {});
    // A listed file of the scan; `risk` as for fromNode.
    static ExplorerEntry fromFile(const FileItem &file, const std::optional<Risk> &risk = {});
    // The verdicts fromNode and fromFile give.
    static Risk assess(const DirNode &node);
    static Risk assess(const FileItem &file);
    // A loose small file read from disk on demand.
    static ExplorerEntry smallFile(const QByteArray &path, qint64 size);

    // The selection item for this entry, from the Space area.
    CleanItem cleanItem() const;

    friend bool operator==(const ExplorerEntry &a, const ExplorerEntry &b)
    {
        return a.id == b.id && a.size == b.size && a.measuring == b.measuring;
    }
};
