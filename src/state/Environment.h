#pragma once

// What the application state reaches outside itself: the scanner, the volume
// listing, the disk-access probe, the removal worker and the first figures on
// screen. The state holds one and calls through it; the real disk and the demo
// disk are two fillings of the same seams. The functions run on workers where
// their comments say so and must then touch nothing but their arguments.

#include "core/CancelToken.h"
#include "core/ScanOptions.h"
#include "core/ScanProgress.h"
#include "core/ScanResult.h"
#include "core/VolumeInfo.h"
#include "duplicates/DuplicatesModel.h"
#include "removal/CleanItem.h"
#include "removal/DeletionItem.h"
#include "removal/FileOperations.h"
#include "removal/Removal.h"
#include "removal/ReviewedItem.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QList>

#include <functional>
#include <memory>

class AppState;
class CleanupModel;
struct JunkLocation;

struct Environment {
    // Walks a tree, on a worker.
    using ScanFunction = std::function<ScanResultPtr(const QByteArray &root, const ScanOptions &options, qint64 firstID,
                                                     const CancelTokenPtr &token,
                                                     const std::function<void(const ScanProgress &)> &progress)>;
    // Reads a saved scan from a file, on a worker; null with `error` set when
    // it can't (DiskScanner::importNcdu).
    using ImportFunction = std::function<ScanResultPtr(
        const QByteArray &file, const ScanOptions &options, qint64 firstID, const CancelTokenPtr &token,
        const std::function<void(const ScanProgress &)> &progress, QString *error)>;
    // Measures one entry of a folder anew, on a worker (DiskScanner::scanEntry).
    using ScanEntryFunction = std::function<ScanResultPtr(const QByteArray &path, const ScanOptions &options,
                                                          qint64 firstID, const CancelTokenPtr &token)>;
    // Lists the mounted volumes, on a worker.
    using VolumesFunction = std::function<QList<VolumeInfo>()>;
    // Whether the user's files can be read at all; on the main thread.
    using AccessProbe = std::function<bool()>;
    // Removes the items the guard let through, on a worker, with file
    // operations of its own.
    using RemoveFunction = std::function<Removal::Outcome(const QList<DeletionItem> &items, bool permanently,
                                                          const Removal::Options &options, FileOperations &operations)>;
    // Records the items of a request and their folders as they are at the
    // review; on the main thread.
    using ReviewFunction = std::function<ReviewedItems(const QList<DeletionItem> &items)>;
    // What clearing a Deep Clean location removes; on the main thread.
    using JunkTargetsFunction = std::function<QList<DeletionItem>(const JunkLocation &location, const CleanItem &item,
                                                                  const CleanupModel &cleanup)>;
    // Finds the twins among files, on a worker; empty means the engine.
    using DuplicateSearch = DuplicatesModel::Search;
    // The running user's trash folders, the home trash first; on a worker.
    using TrashFoldersFunction = std::function<QByteArrayList()>;
    // Puts the environment's own figures on screen at launch, in place of
    // listing, probing and measuring; honouring "-scan" is then left out.
    using Preload = std::function<void(AppState &state)>;

    ScanFunction scan;
    ImportFunction importScan;
    ScanEntryFunction scanEntry;
    VolumesFunction volumes;
    AccessProbe fullDiskAccess;
    RemoveFunction remove;
    // What remove() acts through; a removal under way keeps the one it started with.
    std::shared_ptr<FileOperations> fileOperations;
    ReviewFunction review;
    JunkTargetsFunction junkTargets;
    DuplicateSearch findDuplicates;
    // Where removals to the Trash are written down so that they can be undone;
    // empty for none.
    QByteArray journalFolder;
    // What the Trash's figure counts and "Empty Trash" empties.
    TrashFoldersFunction trashFolders;
    Preload preload;
    // The home folder the safety guard and the risk rules speak of; empty for
    // the user's own. The demo's home is judged as a home, so that what it
    // shows can be selected and reviewed as a real home's would be.
    QByteArray home;
    // True for the demo disk: the window says so, and so does the toast after
    // a removal, which only pretends.
    bool isDemo = false;

    // The real disk: DiskScanner, the mount table, Removal::run through
    // FileOperations::system().
    static Environment system();
    // The made-up home of the demo: its result, volume and Deep Clean figures;
    // removals only pretend, and a scan the user starts is real.
    static Environment demo();
};
