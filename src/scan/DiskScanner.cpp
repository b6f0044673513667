#include "DiskScanner.h"

#include "DevArtifactRule.h"
#include "InodeKey.h"
#include "NcduReader.h"
#include "ParallelTreeWalk.h"
#include "SkipSet.h"
#include "TreeWalk.h"
#include "WalkListener.h"
#include "core/AllocatedSize.h"
#include "core/FileCategory.h"
#include "core/Paths.h"
#include "core/Platform.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <optional>
#include <thread>
#include <unordered_set>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

#if defined(Q_OS_MACOS)
double modifiedOf(const struct stat &st) { return st.st_mtimespec.tv_sec + st.st_mtimespec.tv_nsec / 1e9; }
double accessedOf(const struct stat &st) { return st.st_atimespec.tv_sec + st.st_atimespec.tv_nsec / 1e9; }
#else
double modifiedOf(const struct stat &st) { return double(st.st_mtim.tv_sec) + double(st.st_mtim.tv_nsec) / 1e9; }
double accessedOf(const struct stat &st) { return double(st.st_atim.tv_sec) + double(st.st_atim.tv_nsec) / 1e9; }
#endif

using InodeSet = std::unordered_set<InodeKey, InodeKeyHash>;

// Folders never entered besides the user's exclusions, tested against full paths
// below the scanned root only, so a scan of a volume mounted below one still works.
QByteArrayList systemSkips()
{
    if constexpr (Platform::current() == Platform::macOS)
        return {"/System/Volumes", "/Volumes", "/dev", "/net", "/home", "/Network", "/automount"};
    else
        return {"/proc", "/sys", "/dev", "/run", "/media", "/mnt", "/net", "/snap"};
}

// The one bundle being summed up while the walk is inside it.
struct PackageAccumulator {
    QByteArray path;
    QByteArray name;
    int level = 0;
    double modified = 0;
    double accessed = 0;
    FileCategory category = FileCategory::other;
    qint64 size = 0;
    qint64 logicalSize = 0;
    qint64 count = 0;
};

// The package category of a folder name, or nothing when its extension marks no
// package. Runs once per folder: ASCII extensions are lower-cased on the stack.
std::optional<FileCategory> packageCategory(QByteArrayView name)
{
    constexpr qsizetype longest = 15; // well above the longest package extension
    const QByteArrayView ext = Paths::extension(name);
    if (ext.isEmpty() || ext.size() > longest * 4)
        return std::nullopt;
    if (Paths::isAscii(ext)) {
        if (ext.size() > longest)
            return std::nullopt;
        char lower[longest];
        for (qsizetype i = 0; i < ext.size(); ++i)
            lower[i] = (ext[i] >= 'A' && ext[i] <= 'Z') ? char(ext[i] - 'A' + 'a') : ext[i];
        const QByteArrayView folded(lower, ext.size());
        if (!FileCategory::isPackageExtension(folded))
            return std::nullopt;
        return FileCategory::classify(folded);
    }
    // Full case folding, so that a non-ASCII letter lowering to ASCII still counts.
    const QByteArray folded = QString::fromUtf8(ext.data(), ext.size()).toLower().toUtf8();
    if (!FileCategory::isPackageExtension(folded))
        return std::nullopt;
    return FileCategory::classify(folded);
}

using WalkEntry = TreeWalk::Entry;
using WalkKind = TreeWalk::Kind;

// What a folder the walk enters is, as build output; asked of the walk that
// found it, which knows where that folder lies.
QString artifactKind(TreeWalk &walk, QByteArrayView name)
{
    return DevArtifactRule::match(name, walk.folderDescriptor());
}
QString artifactKind(ParallelTreeWalk &walk, QByteArrayView) { return walk.probed(); }
QString artifactKind(NcduReader &walk, QByteArrayView) { return walk.probed(); }

// The state of one walk. Everything lives for one call and on one thread.
class Walk
{
public:
    Walk(const QByteArray &root, const ScanOptions &options, qint64 firstID, const CancelTokenPtr &token,
         const DiskScanner::ProgressCallback &progress, WalkListener *listener = nullptr)
        : m_skips(DiskScanner::skippedPaths(root, options.excludedPaths)),
          m_threshold(std::max<qint64>(options.minTrackedSize, 1)), m_skipHidden(options.skipHiddenFiles),
          m_packagesAsFiles(options.treatPackagesAsFiles), m_nextID(firstID), m_token(token), m_progress(progress),
          m_listener(listener)
    {}

    ScanResultPtr run(const QByteArray &root, DiskScanner::Walking walking);
    template <class Walker>
    ScanResultPtr runWith(Walker &walk);

private:
    static constexpr int sampleLimit = 200;
    static constexpr qint64 checkEvery = 1024;     // entries between looks at the clock and the token
    static constexpr qint64 publishInterval = 100; // milliseconds

    bool cancelled() const { return m_token && m_token->isCancelled(); }
    void publish();
    void publishNewChild();
    void noteUnreadable(const WalkEntry &entry);
    void markUnreadable(const WalkEntry &entry, bool nothingRead);
    // Both false for what the options leave out.
    template <class Walker>
    bool enterDirectory(Walker &walk, const WalkEntry &entry);
    void leaveDirectory(const WalkEntry &entry);
    void finishPackage(int level);
    bool addFile(const WalkEntry &entry);

    const SkipSet m_skips;
    const qint64 m_threshold;
    const bool m_skipHidden;
    const bool m_packagesAsFiles;

    DirNodePtr m_root;
    std::vector<DirNodePtr> m_nodes; // open directories, root first
    std::vector<int> m_levels;       // their walk levels
    std::optional<PackageAccumulator> m_package;

    std::vector<FileItem> m_files;
    std::vector<DevArtifact> m_artifacts;
    std::array<CategoryTotal, FileCategory::allCases.size()> m_totals{};
    std::array<bool, FileCategory::allCases.size()> m_met{};
    InodeSet m_seen;

    qint64 m_filesScanned = 0;
    qint64 m_bytesScanned = 0;
    qint64 m_totalDirs = 0;
    qint64 m_unreadable = 0;
    QByteArrayList m_samples;
    qint64 m_nextID;

    QList<DiscoveredEntry> m_discovered;
    qsizetype m_open = -1; // index into m_discovered of the entry being measured

    bool m_inArtifact = false;
    int m_artifactLevel = 0;
    // The folder of the last event when that event entered it: an unreadable
    // event right after it means nothing of it could be listed.
    const DirNode *m_entered = nullptr;

    const CancelTokenPtr &m_token;
    const DiskScanner::ProgressCallback &m_progress;
    WalkListener *const m_listener;
    QElapsedTimer m_sincePublished;
    QByteArray m_currentPath;
};

void Walk::publish()
{
    if (m_progress) {
        ScanProgress snapshot;
        snapshot.filesScanned = m_filesScanned;
        snapshot.bytesScanned = m_bytesScanned;
        snapshot.currentPath = m_currentPath;
        snapshot.discovered = m_discovered;
        m_progress(snapshot);
    }
    m_sincePublished.start();
}

// Each new child of the root is shown at once, so the first tiles appear
// without delay. In a root with many thousands of children that would copy the
// whole growing list once per child (quadratic in time and, with the copies
// queued for the main thread, in memory); past the first few hundred children
// the usual rate of ten a second applies instead.
void Walk::publishNewChild()
{
    constexpr qsizetype immediateChildren = 500;
    if (m_discovered.size() <= immediateChildren || m_sincePublished.elapsed() >= publishInterval)
        publish();
}

void Walk::noteUnreadable(const WalkEntry &entry)
{
    ++m_unreadable;
    if (m_samples.size() < sampleLimit)
        m_samples.append(entry.path.toByteArray());
}

// Marks the folder an unreadable event or an entry that could not be examined
// belongs to. A folder that could not be listed at all is unreadable; one that
// was listed, but not all of whose entries could be examined or reached, is
// partly read. Inside a package the folder holding the package is partly read.
void Walk::markUnreadable(const WalkEntry &entry, bool nothingRead)
{
    if (m_nodes.empty())
        return;
    DirNode &top = *m_nodes.back();
    const bool isTop = !m_package && entry.kind == WalkKind::unreadable && m_levels.back() == entry.level;
    const int error = entry.error != 0 ? entry.error : EIO;
    if (isTop && nothingRead) {
        top.readError = qint16(error);
        top.partlyRead = false;
    } else if (!top.isUnreadable()) {
        top.partlyRead = true;
        if (top.readError == 0)
            top.readError = qint16(error);
    }
}

template <class Walker>
bool Walk::enterDirectory(Walker &walk, const WalkEntry &entry)
{
    if (m_package)
        return true; // nothing below a package is skipped, classified or counted as a folder

    const int level = entry.level;
    const QByteArrayView name = entry.name;
    if (level > 0) {
        if ((m_skipHidden && name.startsWith('.')) || m_skips.contains(entry.path)) {
            walk.skip();
            return false;
        }
    }
    ++m_totalDirs;

    const std::optional<FileCategory> packageKind =
        level > 0 && m_packagesAsFiles ? packageCategory(name) : std::nullopt;
    if (packageKind) {
        PackageAccumulator package;
        package.path = entry.path.toByteArray();
        package.name = name.toByteArray();
        package.level = level;
        package.modified = modifiedOf(*entry.st);
        package.accessed = accessedOf(*entry.st);
        package.category = *packageKind;
        if (level == 1) {
            m_discovered.append(DiscoveredEntry{package.path, package.name, 0, false, QString(), true});
            m_open = m_discovered.size() - 1;
            publishNewChild();
        }
        m_package = std::move(package);
        return true;
    }

    const DirNodePtr parent = m_nodes.empty() ? DirNodePtr() : m_nodes.back();
    auto node = std::make_shared<DirNode>(name.toByteArray(), parent);
    if (parent)
        parent->children.push_back(node);
    if (!m_root)
        m_root = node;
    m_nodes.push_back(node);
    m_levels.push_back(level);
    m_entered = node.get();

    if (!m_inArtifact && level > 0) {
        node->artifactKind = artifactKind(walk, name);
        if (!node->artifactKind.isNull()) {
            m_inArtifact = true;
            m_artifactLevel = level;
        }
    }

    if (level == 1) {
        m_discovered.append(DiscoveredEntry{entry.path.toByteArray(), node->name, 0, true, node->artifactKind, true});
        m_open = m_discovered.size() - 1;
        publishNewChild();
    }
    return true;
}

void Walk::finishPackage(int level)
{
    const PackageAccumulator package = std::move(*m_package);
    m_package.reset();
    if (level == 1 && m_open >= 0) {
        DiscoveredEntry &open = m_discovered[m_open];
        open.size = package.size;
        open.measuring = false;
        m_open = -1;
    }
    if (m_nodes.empty())
        return;
    DirNode &parent = *m_nodes.back();
    parent.size += package.size;
    parent.fileCount += package.count;

    m_totals[package.category].size += package.size;
    m_totals[package.category].count += 1;
    m_met[package.category] = true;

    if (package.size < m_threshold) {
        parent.smallFilesSize += package.size;
        return;
    }
    FileItem item;
    item.id = m_nextID++;
    item.path = package.path;
    item.name = package.name;
    item.size = package.size;
    item.logicalSize = package.logicalSize;
    item.modified = package.modified;
    item.accessed = package.accessed;
    item.category = package.category;
    item.isPackage = true;
    item.parent = m_nodes.back();
    parent.files.push_back(item);
    m_files.push_back(std::move(item));
}

void Walk::leaveDirectory(const WalkEntry &entry)
{
    const int level = entry.level;
    if (m_package) {
        if (m_package->level == level)
            finishPackage(level);
        return;
    }
    // A skipped folder gives no leaving event; this guards the stacks.
    if (m_levels.empty() || m_levels.back() != level)
        return;
    const DirNodePtr node = std::move(m_nodes.back());
    m_nodes.pop_back();
    m_levels.pop_back();

    if (level == 1 && m_open >= 0) {
        DiscoveredEntry &open = m_discovered[m_open];
        open.size = node->size;
        open.measuring = false;
        m_open = -1;
    }
    // The only place sizes move upwards: once per folder, when it is done.
    if (node->hasReadError())
        ++node->unreadableBelow;
    if (!m_nodes.empty()) {
        m_nodes.back()->size += node->size;
        m_nodes.back()->fileCount += node->fileCount;
        m_nodes.back()->unreadableBelow += node->unreadableBelow;
    }
    if (m_inArtifact && m_artifactLevel == level) {
        if (!node->artifactKind.isNull())
            m_artifacts.push_back(
                DevArtifact{entry.path.toByteArray(), node->artifactKind, node->size, node->fileCount});
        m_inArtifact = false;
    }
}

bool Walk::addFile(const WalkEntry &entry)
{
    const struct stat &st = *entry.st;
    const QByteArrayView name = entry.name;
    // A hidden name left out is not met at all: another link of the same file
    // still counts where it is.
    if (m_skipHidden && !m_package && !m_nodes.empty() && name.startsWith('.'))
        return false;
    // Every link of a file after the first one met is left out altogether.
    if (st.st_nlink > 1 && !m_seen.insert(InodeKey{st.st_dev, st.st_ino}).second)
        return true;
    const qint64 size = allocatedSize(st);

    if (m_package) {
        m_package->size += size;
        m_package->logicalSize += qint64(st.st_size);
        m_package->count += 1;
        ++m_filesScanned;
        m_bytesScanned += size;
        return true;
    }
    if (m_nodes.empty())
        return true; // a root that is itself a file yields no tree

    ++m_filesScanned;
    m_bytesScanned += size;
    const FileCategory category = FileCategory::forFileName(name);
    m_totals[category].size += size;
    m_totals[category].count += 1;
    m_met[category] = true;

    DirNode &dir = *m_nodes.back();
    dir.size += size;
    dir.fileCount += 1;
    if (size < m_threshold) {
        dir.smallFilesSize += size;
        return true;
    }
    FileItem item;
    item.id = m_nextID++;
    item.path = entry.path.toByteArray();
    item.name = name.toByteArray();
    item.size = size;
    item.logicalSize = qint64(st.st_size);
    item.modified = modifiedOf(st);
    item.accessed = accessedOf(st);
    item.category = category;
    item.parent = m_nodes.back();
    dir.files.push_back(item);
    m_files.push_back(item);

    if (entry.level == 1) {
        m_discovered.append(DiscoveredEntry{item.path, item.name, size, false, QString(), false});
        publishNewChild();
    }
    return true;
}

ScanResultPtr Walk::run(const QByteArray &root, DiskScanner::Walking walking)
{
    const int cores = int(std::thread::hardware_concurrency());
    if (walking == DiskScanner::Walking::oneThread || (walking == DiskScanner::Walking::automatic && cores < 2)) {
        TreeWalk walk(root, true);
        return runWith(walk);
    }
    ParallelTreeWalk::Options options;
    // The reader is busy all the way through: one lister per other core. More
    // would only take turns with it and with each other.
    options.threads = std::clamp(cores - 1, 1, 4);
    options.skipHidden = m_skipHidden;
    options.skips = m_skips;
    options.probe = [](QByteArrayView name, int parentFd) { return DevArtifactRule::match(name, parentFd); };
    ParallelTreeWalk walk(root, true, std::move(options));
    return runWith(walk);
}

template <class Walker>
ScanResultPtr Walk::runWith(Walker &walk)
{
    QElapsedTimer clock;
    clock.start();
    m_sincePublished.start();

    qint64 entries = 0;
    WalkEntry entry;
    while (walk.next(entry)) {
        if (++entries % checkEvery == 0) {
            if (cancelled())
                return {};
            if (m_sincePublished.elapsed() >= publishInterval) {
                m_currentPath = entry.path.toByteArray();
                if (m_open >= 0 && m_nodes.size() >= 2)
                    m_discovered[m_open].size = m_nodes[1]->size;
                publish();
            }
        }
        const DirNode *entered = std::exchange(m_entered, nullptr);
        bool leftOut = false;
        switch (entry.kind) {
        case WalkKind::directory:
            leftOut = !enterDirectory(walk, entry);
            break;
        case WalkKind::unreadable:
            noteUnreadable(entry);
            markUnreadable(entry, entered && !m_nodes.empty() && entered == m_nodes.back().get());
            leaveDirectory(entry); // it was entered and must be closed; what was read of it stays
            break;
        case WalkKind::directoryDone:
            leaveDirectory(entry);
            break;
        case WalkKind::noStat:
            noteUnreadable(entry);
            markUnreadable(entry, false);
            break;
        case WalkKind::file:
            leftOut = !addFile(entry);
            break;
        case WalkKind::symlink:
        case WalkKind::other:
            // Links are never followed; sockets, devices and cycles have no size.
            break;
        }
        if (m_listener)
            m_listener->seen(entry, leftOut);
    }

    // The last entries since the previous look at the token still count.
    if (cancelled() || !m_root)
        return {};

    m_root->sortRecursively();
    const auto bySize = [](const auto &a, const auto &b) { return a.size > b.size; };
    std::stable_sort(m_files.begin(), m_files.end(), bySize);
    std::stable_sort(m_artifacts.begin(), m_artifacts.end(), bySize);

    auto result = std::make_shared<ScanResult>();
    result->root = m_root;
    result->files = std::move(m_files);
    result->artifacts = std::move(m_artifacts);
    for (FileCategory category : FileCategory::allCases)
        if (m_met[category])
            result->categoryTotals.emplace(category, m_totals[category]);
    result->totalFiles = m_filesScanned;
    result->totalDirs = m_totalDirs;
    result->unreadableCount = m_unreadable;
    result->unreadableSamples = std::move(m_samples);
    result->duration = double(clock.nsecsElapsed()) / 1e9;
    result->date = double(QDateTime::currentMSecsSinceEpoch()) / 1000.0;
    result->lastID = m_nextID;
    return result;
}

} // namespace

namespace DiskScanner {

ScanResultPtr scan(const QByteArray &root, const ScanOptions &options, qint64 firstID, const CancelTokenPtr &token,
                   const ProgressCallback &progress, Walking walking, WalkListener *listener)
{
    const QByteArray path = Paths::normalize(root);
    Walk walk(path, options, firstID, token, progress, listener);
    ScanResultPtr result = walk.run(path, walking);
    if (result)
        result->options = options;
    return result;
}

ScanResultPtr importNcdu(const QByteArray &saved, const ScanOptions &options, qint64 firstID,
                         const CancelTokenPtr &token, const ProgressCallback &progress, QString *error)
{
    const auto tr = [](const char *text) { return QCoreApplication::translate("DiskScanner", text); };
    const auto failWith = [error](const QString &text) {
        if (error)
            *error = text;
        return ScanResultPtr();
    };
    const auto cancelled = [&token] { return token && token->isCancelled(); };

    // The document is read twice, so standard input goes to a file first.
    QFile file;
    QTemporaryFile spooled;
    QIODevice *device = &file;
    if (saved == "-") {
        QFile input;
        if (!input.open(stdin, QIODevice::ReadOnly) || !spooled.open())
            return failWith(tr("cannot read the saved scan from standard input"));
        QByteArray chunk(1 << 16, Qt::Uninitialized);
        for (qint64 got; (got = input.read(chunk.data(), chunk.size())) > 0;) {
            if (spooled.write(chunk.constData(), got) != got)
                return failWith(tr("cannot keep the saved scan from standard input: %1").arg(spooled.errorString()));
            if (cancelled())
                return {};
        }
        spooled.seek(0);
        device = &spooled;
    } else {
        file.setFileName(QFile::decodeName(saved));
        if (!file.open(QIODevice::ReadOnly))
            return failWith(tr("cannot open %1: %2").arg(Paths::toDisplay(saved), file.errorString()));
    }

    // First reading: whether a folder is an artefact may depend on files beside
    // it that come after it.
    NcduReader::ProjectFiles projectFiles;
    QByteArray root;
    {
        NcduReader first(*device, nullptr);
        first.gatherInto(&projectFiles);
        TreeWalk::Entry entry{};
        for (qint64 read = 0; first.next(entry);)
            if (++read % 4096 == 0 && cancelled())
                return {};
        if (!first.errorText().isEmpty())
            return failWith(first.errorText());
        root = first.root();
    }
    if (!device->seek(0))
        return failWith(tr("cannot read %1 again: %2").arg(Paths::toDisplay(saved), device->errorString()));

    NcduReader reader(*device, &projectFiles);
    Walk walk(root, options, firstID, token, progress);
    ScanResultPtr result = walk.runWith(reader);
    if (!reader.errorText().isEmpty())
        return failWith(reader.errorText());
    if (!result)
        return {};
    result->options = options;
    result->importedFrom = saved;
    if (reader.timestamp() > 0)
        result->date = double(reader.timestamp());
    return result;
}

QByteArrayList skippedPaths(const QByteArray &rootPath, const QByteArrayList &excluded)
{
    const QByteArray root = Paths::normalize(rootPath);
    QByteArrayList out;
    for (const QByteArray &path : excluded)
        out.append(Paths::normalize(path));
    out.append(systemSkips());
    char *resolved = ::realpath(root.constData(), nullptr);
    if (!resolved)
        return out;
    const QByteArray real(resolved);
    std::free(resolved);
    if (real == root)
        return out;
    const qsizetype given = out.size();
    for (qsizetype i = 0; i < given; ++i) {
        const QByteArray path = out[i]; // shared, and safe from the appends below
        if (real == "/" ? path.size() > 1
                        : path.size() > real.size() && path.startsWith(real) && path[real.size()] == '/')
            out.append(root + path.sliced(real == "/" ? 0 : real.size()));
    }
    return out;
}

ScanResultPtr scanEntry(const QByteArray &entryPath, const ScanOptions &options, qint64 firstID,
                        const CancelTokenPtr &token)
{
    const QByteArray path = Paths::normalize(entryPath);
    const QByteArray folder = Paths::parentOf(path);
    const QByteArray name = Paths::lastComponent(path);
    if (folder.isEmpty() || name.isEmpty() || (options.skipHiddenFiles && name.startsWith('.')))
        return {};
    for (const QByteArray &skipped : skippedPaths(folder, options.excludedPaths))
        if (Paths::equal(skipped, path))
            return {};
    struct stat st {};
    if (::lstat(path.constData(), &st) != 0)
        return {};

    auto piece = std::make_shared<ScanResult>();
    piece->root = std::make_shared<DirNode>(folder);
    piece->lastID = firstID;
    DirNode &top = *piece->root;

    if (S_ISREG(st.st_mode) || (S_ISDIR(st.st_mode) && options.treatPackagesAsFiles && packageCategory(name))) {
        // A file, or a package that a scan counts as one.
        const DiskUsage inside = S_ISDIR(st.st_mode) ? usage(path, token) : DiskUsage{allocatedSize(st), 1, true, true};
        const FileCategory category = S_ISDIR(st.st_mode) ? *packageCategory(name) : FileCategory::forFileName(name);
        const qint64 count = S_ISDIR(st.st_mode) ? inside.items : 1;
        top.size = inside.size;
        top.fileCount = count;
        piece->categoryTotals[category] = CategoryTotal{inside.size, count};
        piece->totalFiles = count;
        if (inside.size < std::max<qint64>(options.minTrackedSize, 1) && !S_ISDIR(st.st_mode)) {
            top.smallFilesSize = inside.size;
            return piece;
        }
        FileItem item;
        item.id = piece->lastID++;
        item.path = path;
        item.name = name;
        item.size = inside.size;
        item.logicalSize = qint64(st.st_size);
        item.modified = modifiedOf(st);
        item.accessed = accessedOf(st);
        item.category = category;
        item.isPackage = S_ISDIR(st.st_mode);
        item.parent = piece->root;
        top.files.push_back(item);
        piece->files.push_back(item);
        return piece;
    }
    if (!S_ISDIR(st.st_mode))
        return {}; // links, sockets and devices count for nothing

    const ScanResultPtr tree = scan(path, options, firstID, token, {});
    if (!tree)
        return {};
    // The tree's root is named by its whole path; as a child it goes by its name.
    auto node = std::make_shared<DirNode>(name, piece->root);
    const DirNode &from = *tree->root;
    node->size = from.size;
    node->fileCount = from.fileCount;
    node->smallFilesSize = from.smallFilesSize;
    node->unreadableBelow = from.unreadableBelow;
    node->readError = from.readError;
    node->partlyRead = from.partlyRead;
    node->children = std::move(tree->root->children);
    node->files = std::move(tree->root->files);
    for (const DirNodePtr &child : node->children)
        child->parent = node;
    for (FileItem &file : node->files)
        file.parent = node;
    for (FileItem &file : tree->files)
        if (Paths::equal(Paths::parentOf(file.path), path))
            file.parent = node;
    top.children.push_back(node);
    top.size = node->size;
    top.fileCount = node->fileCount;
    top.unreadableBelow = node->unreadableBelow;

    piece->files = std::move(tree->files);
    piece->categoryTotals = std::move(tree->categoryTotals);
    piece->artifacts = std::move(tree->artifacts);
    piece->totalFiles = tree->totalFiles;
    piece->totalDirs = tree->totalDirs;
    piece->unreadableCount = tree->unreadableCount;
    piece->unreadableSamples = std::move(tree->unreadableSamples);
    piece->lastID = tree->lastID;

    // The entry itself may be build output, judged beside its neighbours; what
    // lies inside an artefact is no artefact of its own.
    const int folderFd = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folderFd >= 0) {
        node->artifactKind = DevArtifactRule::match(name, folderFd);
        ::close(folderFd);
    }
    if (!node->artifactKind.isNull()) {
        piece->artifacts = {DevArtifact{path, node->artifactKind, node->size, node->fileCount}};
        std::vector<DirNode *> stack;
        for (const DirNodePtr &child : node->children)
            stack.push_back(child.get());
        while (!stack.empty()) {
            DirNode *at = stack.back();
            stack.pop_back();
            at->artifactKind = QString();
            for (const DirNodePtr &child : at->children)
                stack.push_back(child.get());
        }
    }
    return piece;
}

DiskUsage usage(const QByteArray &of, const CancelTokenPtr &token)
{
    DiskUsage usage;
    const QByteArray path = Paths::normalize(of);
    struct stat st;
    if (::lstat(path.constData(), &st) != 0) {
        usage.readable = true;
        return usage;
    }
    usage.exists = true;
    if (!S_ISDIR(st.st_mode)) {
        usage.size = allocatedSize(st);
        usage.items = 1;
        usage.readable = true;
        return usage;
    }
    usage.readable = true;
    TreeWalk walk(path, false);
    InodeSet seen;
    qint64 entries = 0;
    WalkEntry entry;
    while (walk.next(entry)) {
        if (++entries % 4096 == 0 && token && token->isCancelled())
            break;
        if (entry.kind == WalkKind::file) {
            const struct stat &fst = *entry.st;
            if (fst.st_nlink > 1 && !seen.insert(InodeKey{fst.st_dev, fst.st_ino}).second)
                continue;
            usage.size += allocatedSize(fst);
            usage.items += 1;
        } else if (entry.kind == WalkKind::unreadable && entry.level == 0) {
            usage.readable = false;
        }
    }
    return usage;
}

} // namespace DiskScanner
