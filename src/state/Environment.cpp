#include "Environment.h"

#include "removal/RemovalJournal.h"

#include "AppState.h"

#include "core/FullDiskAccess.h"
#include "core/Platform.h"
#include "core/TrashFolders.h"
#include "deepclean/CleanupModel.h"
#include "deepclean/JunkLocation.h"
#include "demo/Demo.h"
#include "scan/DiskScanner.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QThread>

#include <algorithm>
#include <map>

namespace {

// The demo's twins, found without reading a byte: its files of equal size are
// copies of each other. The search takes a moment, as a real one would, and
// stops when cancelled. Files of a real scan go to the engine.
std::optional<std::vector<DuplicateGroup>> demoTwins(const std::vector<FileItem> &files, const CancelTokenPtr &token,
                                                     const DuplicateEngine::ProgressCallback &progress,
                                                     DuplicateEngine::Unreadable *unreadable)
{
    if (!std::all_of(files.begin(), files.end(), [](const FileItem &file) { return Demo::isDemoPath(file.path); }))
        return DuplicateEngine::find(files, token, progress, DuplicateEngine::Reading::automatic, unreadable);
    static const char *const stages[] = {QT_TRANSLATE_NOOP("Demo", "Comparing sizes…"),
                                         QT_TRANSLATE_NOOP("Demo", "Reading samples…"),
                                         QT_TRANSLATE_NOOP("Demo", "Proving contents (SHA-256)…")};
    constexpr int steps = 30;
    for (int step = 0; step < steps; ++step) {
        if (token->isCancelled())
            return std::nullopt;
        progress(double(step) / steps, QCoreApplication::translate("Demo", stages[step * 3 / steps]));
        QThread::msleep(40);
    }
    std::map<qint64, std::vector<FileItem>> bySize;
    for (const FileItem &file : files)
        bySize[file.size].push_back(file);
    std::vector<DuplicateGroup> groups;
    for (auto &[size, same] : bySize) {
        if (same.size() < 2)
            continue;
        std::stable_sort(same.begin(), same.end(),
                         [](const FileItem &a, const FileItem &b) { return a.modified > b.modified; });
        const QByteArray digest =
            QCryptographicHash::hash("demo:" + QByteArray::number(size), QCryptographicHash::Sha256);
        groups.push_back({QString::fromLatin1(digest.toHex()), size, std::move(same)});
    }
    std::stable_sort(groups.begin(), groups.end(), [](const DuplicateGroup &a, const DuplicateGroup &b) {
        return a.reclaimable() > b.reclaimable();
    });
    if (token->isCancelled())
        return std::nullopt;
    progress(1.0, QCoreApplication::translate("Demo", "Done"));
    return groups;
}

} // namespace

Environment Environment::system()
{
    Environment env;
    env.scan = [](const QByteArray &root, const ScanOptions &options, qint64 firstID, const CancelTokenPtr &token,
                  const DiskScanner::ProgressCallback &progress) {
        return DiskScanner::scan(root, options, firstID, token, progress);
    };
    env.importScan = &DiskScanner::importNcdu;
    env.scanEntry = &DiskScanner::scanEntry;
    env.volumes = &VolumeInfo::mounted;
    // Only macOS guards the user's files behind Full Disk Access.
    env.fullDiskAccess = [] {
        return Platform::current() == Platform::macOS ? FullDiskAccess::probe(Platform::homeDirectory()) : true;
    };
    env.remove = [](const QList<DeletionItem> &items, bool permanently, const Removal::Options &options,
                    FileOperations &operations) { return Removal::run(items, permanently, operations, options); };
    env.fileOperations = FileOperations::system();
    env.review = &Removal::review;
    env.journalFolder = RemovalJournal::defaultFolder();
    env.trashFolders = [] { return TrashFolders::ofUser(Platform::homeDirectory(), TrashFolders::mountPoints()); };
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
    env.remove = [](const QList<DeletionItem> &items, bool, const Removal::Options &, FileOperations &) {
        Removal::Outcome outcome;
        for (const DeletionItem &item : items)
            outcome.freed.insert(item.path, item.size.value_or(0));
        return outcome;
    };
    env.review = [](const QList<DeletionItem> &) { return ReviewedItems(); };
    // The demo's listing stands for the disk.
    env.junkTargets = [](const JunkLocation &location, const CleanItem &item, const CleanupModel &cleanup) {
        QList<DeletionItem> out;
        for (const JunkEntry &entry : cleanup.contents().value(location.id))
            out.append({entry.path, entry.size, true});
        if (out.isEmpty())
            out.append({item.id, item.size, true});
        return out;
    };
    env.findDuplicates = &demoTwins;
    // The demo's Trash is a figure; emptying it only pretends.
    env.trashFolders = [] { return QByteArrayList(); };
    env.preload = [](AppState &state) {
        state.setVolumes({Demo::volume()});
        const QMap<QString, DiskUsage> figures = Demo::measurements();
        state.cleanup()->loadDemo(QHash<QString, DiskUsage>(figures.keyValueBegin(), figures.keyValueEnd()),
                                  Demo::contents());
        state.showResult(Demo::home(), Demo::scanResult(state.nextFileID()));
    };
    env.home = Demo::home();
    env.isDemo = true;
    env.journalFolder.clear();
    return env;
}
