#pragma once

#include "DirNode.h"
#include "FileCategory.h"
#include "FileItem.h"
#include "ScanRecords.h"

#include <QByteArray>
#include <QByteArrayList>

#include <map>
#include <memory>
#include <vector>

// The outcome of one scan. Built by one worker, then handed to the main thread,
// where only the fields marked mutable change afterwards, through removal.
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

    // Zero size and count for a category that was never met.
    CategoryTotal total(FileCategory category) const;

    // The node of a directory path, or null. Files and packages have no node.
    DirNodePtr node(QByteArrayView path) const;
};

using ScanResultPtr = std::shared_ptr<ScanResult>;
