#include "Environment.h"

#include "AppState.h"

#include "core/FullDiskAccess.h"
#include "core/Platform.h"
#include "deepclean/CleanupModel.h"
#include "deepclean/JunkLocation.h"
#include "demo/Demo.h"
#include "scan/DiskScanner.h"

Environment Environment::system()
{
    Environment env;
    env.scan = &DiskScanner::scan;
    env.volumes = &VolumeInfo::mounted;
    // Only macOS guards the user's files behind Full Disk Access.
    env.fullDiskAccess = [] {
        return Platform::current() == Platform::macOS ? FullDiskAccess::probe(Platform::homeDirectory()) : true;
    };
    env.remove = [](const QList<DeletionItem> &items, bool permanently, const ReviewedFolders &reviewed,
                    FileOperations &operations) { return Removal::run(items, permanently, operations, reviewed); };
    env.fileOperations = FileOperations::system();
    env.review = &Removal::reviewFolders;
    env.junkTargets = [](const JunkLocation &location, const CleanItem &, const CleanupModel &) {
        QList<DeletionItem> out;
        for (const QByteArray &path : location.targets())
            out.append({path, std::nullopt, true});
        return out;
    };
    return env;
}

Environment Environment::demo()
{
    Environment env = system();
    env.volumes = [] { return QList<VolumeInfo>{Demo::volume()}; };
    env.fullDiskAccess = [] { return true; };
    // Nothing on disk is touched: every item "goes" with the size it was
    // shown with.
    env.remove = [](const QList<DeletionItem> &items, bool, const ReviewedFolders &, FileOperations &) {
        Removal::Outcome outcome;
        for (const DeletionItem &item : items)
            outcome.freed.insert(item.path, item.size.value_or(0));
        return outcome;
    };
    env.review = [](const QList<DeletionItem> &) { return ReviewedFolders(); };
    // The demo's listing stands for the disk.
    env.junkTargets = [](const JunkLocation &location, const CleanItem &item, const CleanupModel &cleanup) {
        QList<DeletionItem> out;
        for (const JunkEntry &entry : cleanup.contents().value(location.id))
            out.append({entry.path, entry.size, true});
        if (out.isEmpty())
            out.append({item.id, item.size, true});
        return out;
    };
    env.preload = [](AppState &state) {
        state.setVolumes({Demo::volume()});
        const QMap<QString, DiskUsage> figures = Demo::measurements();
        state.cleanup()->loadDemo(QHash<QString, DiskUsage>(figures.keyValueBegin(), figures.keyValueEnd()),
                                  Demo::cacheContents());
        state.showResult(Demo::home, Demo::scanResult(state.nextFileID()));
    };
    env.isDemo = true;
    return env;
}
