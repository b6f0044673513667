#include "ScanResult.h"

#include "Paths.h"

#include <algorithm>

CategoryTotal ScanResult::total(FileCategory category) const
{
    const auto it = categoryTotals.find(category);
    return it == categoryTotals.end() ? CategoryTotal{} : it->second;
}

DirNodePtr ScanResult::node(QByteArrayView path) const
{
    if (!root)
        return {};
    if (Paths::equal(path, root->name))
        return root;

    QByteArray prefix = root->name;
    if (!prefix.endsWith('/'))
        prefix += '/';
    if (!Paths::startsWith(path, prefix))
        return {};

    // Cut the prefix off the form the comparison matched on.
    QByteArrayView rest;
    QByteArray normalised;
    if (path.startsWith(prefix)) {
        rest = path.sliced(prefix.size());
    } else {
        normalised = Paths::comparable(path);
        rest = QByteArrayView(normalised).sliced(Paths::comparable(prefix).size());
    }

    DirNodePtr current = root;
    qsizetype pos = 0;
    while (pos <= rest.size()) {
        qsizetype slash = rest.indexOf('/', pos);
        if (slash < 0)
            slash = rest.size();
        const QByteArrayView piece = rest.sliced(pos, slash - pos);
        pos = slash + 1;
        if (piece.isEmpty())
            continue;
        DirNodePtr next;
        for (const auto &child : current->children) {
            if (Paths::equal(child->name, piece)) {
                next = child;
                break;
            }
        }
        if (!next)
            return {};
        current = std::move(next);
    }
    return current;
}

namespace {

void takeFrom(qint64 &value, qint64 amount) { value = std::max<qint64>(0, value - amount); }

// Takes size, count and unreadable folders off `node` and every folder above it.
void takeUpwards(DirNodePtr node, qint64 size, qint64 count, qint32 unreadable = 0)
{
    for (; node; node = node->parentNode()) {
        takeFrom(node->size, size);
        takeFrom(node->fileCount, count);
        node->unreadableBelow = std::max<qint32>(0, node->unreadableBelow - unreadable);
    }
}

// Adds size, count and unreadable folders to `node` and every folder above it.
void addUpwards(DirNodePtr node, qint64 size, qint64 count, qint32 unreadable)
{
    for (; node; node = node->parentNode()) {
        node->size += size;
        node->fileCount += count;
        node->unreadableBelow += unreadable;
    }
}

} // namespace

ScanResult::CategoryTakes ScanResult::remove(const QSet<QByteArray> &paths, const QHash<QByteArray, qint64> &sizes)
{
    CategoryTakes takes;
    if (paths.isEmpty())
        return takes;

    QSet<QByteArray> wanted;
    wanted.reserve(paths.size());
    for (const QByteArray &path : paths)
        wanted.insert(Paths::comparable(path));

    auto takeFromCategory = [this, &takes](const QByteArray &path, FileCategory category, qint64 size, qint64 count) {
        CategoryTotal &taken = takes[path][category];
        taken.size += size;
        taken.count += count;
        const auto it = categoryTotals.find(category);
        if (it == categoryTotals.end())
            return;
        takeFrom(it->second.size, size);
        takeFrom(it->second.count, count);
    };

    // What went below each path, for the artefacts' own figures.
    struct Taken {
        QByteArray path;
        qint64 size;
        qint64 count;
    };
    std::vector<Taken> taken;

    QSet<qint64> removedIDs;
    QSet<QByteArray> handled;

    // Listed files.
    for (const FileItem &file : files) {
        const QByteArray key = Paths::comparable(file.path);
        if (!wanted.contains(key))
            continue;
        removedIDs.insert(file.id);
        handled.insert(key);
        if (const DirNodePtr parent = file.parentNode()) {
            std::erase_if(parent->files, [&](const FileItem &f) { return f.id == file.id; });
            takeUpwards(parent, file.size, 1);
        }
        takeFromCategory(file.path, file.category, file.size, 1);
        taken.push_back({file.path, file.size, 1});
    }

    // Folders that went whole, detached from the tree at once; their listed
    // files are found afterwards in one pass over `files`.
    struct GoneFolder {
        QByteArray path;
        DirNodePtr node;
        qint64 size;
        qint64 listed = 0;
    };
    std::vector<GoneFolder> gone;
    QHash<const DirNode *, size_t> goneIndex;

    for (const QByteArray &path : paths) {
        if (handled.contains(Paths::comparable(path)))
            continue;
        if (const DirNodePtr n = node(path)) {
            const DirNodePtr parent = n->parentNode();
            if (!parent)
                continue; // the root never goes
            std::erase_if(parent->children, [&](const DirNodePtr &child) { return child == n; });
            takeUpwards(parent, n->size, n->fileCount, n->unreadableBelow);
            goneIndex.insert(n.get(), gone.size());
            gone.push_back({path, n, n->size});
            taken.push_back({path, n->size, n->fileCount});
            continue;
        }
        const qint64 size = sizes.value(path, 0);
        if (size <= 0)
            continue;
        // A small file the scan rolled up into its folder.
        const DirNodePtr parent = node(Paths::parentOf(path));
        if (!parent)
            continue;
        takeFrom(parent->smallFilesSize, size);
        takeUpwards(parent, size, 1);
        takeFromCategory(path, FileCategory::forFileName(Paths::lastComponent(path)), size, 1);
        taken.push_back({path, size, 1});
    }

    if (!gone.empty()) {
        // Each listed file belongs to the nearest folder above it that went
        // (a detached folder still knows its old parent).
        for (const FileItem &file : files) {
            if (removedIDs.contains(file.id))
                continue;
            GoneFolder *owner = nullptr;
            if (DirNodePtr at = file.parentNode()) {
                for (; at && !owner; at = at->parentNode()) {
                    const auto it = goneIndex.constFind(at.get());
                    if (it != goneIndex.cend())
                        owner = &gone[*it];
                }
            } else {
                // No tree to walk: go by the path, nearest folder first.
                for (GoneFolder &folder : gone)
                    if (Paths::isBelow(file.path, folder.path) && (!owner || folder.path.size() > owner->path.size()))
                        owner = &folder;
            }
            if (!owner)
                continue;
            removedIDs.insert(file.id);
            owner->listed += file.size;
            takeFromCategory(owner->path, file.category, file.size, 1);
        }
        // What no listed file stands for comes off `other`, by its size and by
        // a count of one, however many files it was.
        for (const GoneFolder &folder : gone)
            takeFromCategory(folder.path, FileCategory::other, std::max<qint64>(folder.size - folder.listed, 0), 1);
    }

    if (!removedIDs.isEmpty())
        std::erase_if(files, [&](const FileItem &file) { return removedIDs.contains(file.id); });

    // Artefacts that went, or lie inside what went; the others lose what went
    // inside them.
    std::erase_if(artifacts, [&](const DevArtifact &artifact) {
        const QByteArray key = Paths::comparable(artifact.path);
        if (wanted.contains(key))
            return true;
        for (const QByteArray &path : paths)
            if (Paths::isBelow(artifact.path, path))
                return true;
        return false;
    });
    bool resized = false;
    for (DevArtifact &artifact : artifacts) {
        for (const Taken &t : taken) {
            if (Paths::isBelow(t.path, artifact.path)) {
                takeFrom(artifact.size, t.size);
                takeFrom(artifact.fileCount, t.count);
                resized = true;
            }
        }
    }
    if (resized)
        std::stable_sort(artifacts.begin(), artifacts.end(),
                         [](const DevArtifact &a, const DevArtifact &b) { return a.size > b.size; });
    return takes;
}

bool ScanResult::graft(const ScanResult &piece, const std::map<FileCategory::Value, CategoryTotal> *categories)
{
    if (!piece.root)
        return false;
    const DirNodePtr target = node(piece.root->name);
    if (!target)
        return false;
    const QByteArray targetPath = target->path();

    // A child of the same name is what the piece measures anew.
    QSet<QByteArray> replaced;
    for (const DirNodePtr &child : piece.root->children)
        for (const DirNodePtr &old : target->children)
            if (Paths::equal(old->name, child->name))
                replaced.insert(Paths::join(targetPath, child->name));
    if (!replaced.isEmpty())
        remove(replaced, {});

    bool insideArtifact = false;
    for (DirNodePtr at = target; at && !insideArtifact; at = at->parentNode())
        insideArtifact = !at->artifactKind.isNull();

    const DirNode &top = *piece.root;
    for (const DirNodePtr &child : top.children) {
        child->parent = target;
        if (insideArtifact)
            child->artifactKind = QString();
        target->children.push_back(child);
    }
    for (FileItem file : top.files) {
        file.parent = target;
        target->files.push_back(file);
    }
    target->smallFilesSize += top.smallFilesSize;
    addUpwards(target, top.size, top.fileCount, top.unreadableBelow);

    const auto bySize = [](const auto &a, const auto &b) { return a.size > b.size; };
    std::stable_sort(target->children.begin(), target->children.end(),
                     [](const DirNodePtr &a, const DirNodePtr &b) { return a->size > b->size; });
    std::stable_sort(target->files.begin(), target->files.end(), bySize);

    for (const FileItem &file : piece.files) {
        FileItem listed = file;
        if (Paths::equal(Paths::parentOf(file.path), targetPath))
            listed.parent = target;
        files.push_back(listed);
    }
    std::stable_sort(files.begin(), files.end(), bySize);

    for (const auto &[category, total] : categories ? *categories : piece.categoryTotals) {
        CategoryTotal &mine = categoryTotals[category];
        mine.size += total.size;
        mine.count += total.count;
    }

    for (DevArtifact &artifact : artifacts) {
        if (Paths::equal(artifact.path, targetPath) || Paths::isBelow(targetPath, artifact.path)) {
            artifact.size += top.size;
            artifact.fileCount += top.fileCount;
        }
    }
    if (!insideArtifact)
        artifacts.insert(artifacts.end(), piece.artifacts.begin(), piece.artifacts.end());
    std::stable_sort(artifacts.begin(), artifacts.end(), bySize);
    lastID = std::max(lastID, piece.lastID);
    return true;
}
