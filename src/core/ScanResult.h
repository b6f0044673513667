// The outcome of one scan. Built by one worker, then handed to the main thread,
// where only the fields marked mutable change afterwards, through removal.

#pragma once

#include "CategoryTotal.h"
#include "DevArtifact.h"
#include "DirNode.h"
#include "FileCategory.h"
#include "FileItem.h"
#include "ScanOptions.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QHash>
#include <QSet>

#include <map>
#include <memory>
#include <vector>

class ScanResult
{
public:
    DirNodePtr root;

    // Mutable: every FileItem of the scan, largest first (the same items as in
    // the nodes' `files`).
    std::vector<FileItem> files;
    // Mutable: only categories that were met have a key.
    std::map<FileCategory::Value, CategoryTotal> categoryTotals;
    // Mutable: largest first.
    std::vector<DevArtifact> artifacts;

    qint64 totalFiles = 0; // small ones and those inside packages included
    qint64 totalDirs = 0;  // entered, root and packages included
    qint64 unreadableCount = 0;
    QByteArrayList unreadableSamples; // the first 200
    double duration = 0;              // seconds
    double date = 0;                  // seconds since the epoch, when it ended
    qint64 lastID = 0;                // next free FileItem id
    ScanOptions options;              // the rules the scan followed
    QByteArray importedFrom;          // the saved scan it was read from; empty for a walk of the disk

    // Zero size and count for a category that was never met.
    CategoryTotal total(FileCategory category) const;

    // The node of a directory path, or null. Files and packages have no node.
    DirNodePtr node(QByteArrayView path) const;

    // Takes out what a removal took, by subtraction, never by adding up again:
    // listed files, folders that went whole and loose small files (those with
    // a size above 0 in `sizes`, the bytes each freed). Every size and count on
    // the way up, the category totals and the artefacts lose what went; nothing
    // goes below 0; a folder that went takes its unreadable folders off the
    // counts above it. A folder that went whole comes off its category totals by
    // its listed files, and the rest of it off `other`, by its size and by a
    // count of one (its unlisted files are not known one by one). Paths the
    // scan does not know change nothing, and the root itself never goes.
    // Notifies nobody. Returns what each of `paths` took off the category
    // totals, so that putting it back can give the same again.
    using CategoryTakes = QHash<QByteArray, std::map<FileCategory::Value, CategoryTotal>>;
    CategoryTakes remove(const QSet<QByteArray> &paths, const QHash<QByteArray, qint64> &sizes);

    // Puts back what came back to disk: `piece` is a scan of one folder that
    // holds only the entries that came back (DiskScanner::scanEntry), and its
    // figures join this result's node of that folder, by addition on the way
    // up: its folders become children (an entry of the same name already here
    // is replaced), its files are listed, its small files and every category
    // total and artefact it found count again, and an artefact around the
    // folder grows by it. Inside an artefact nothing is an artefact of its own.
    // False, and nothing changes, when this result has no node for the folder.
    // The piece's FileItem ids must be new to this result. With `categories`
    // the totals grow by those (what a removal of the same entry took) in
    // place of the piece's own. Notifies nobody.
    bool graft(const ScanResult &piece, const std::map<FileCategory::Value, CategoryTotal> *categories = nullptr);
};

using ScanResultPtr = std::shared_ptr<ScanResult>;
