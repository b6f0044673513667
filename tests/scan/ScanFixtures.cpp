#include "ScanFixtures.h"

#include "Unprivileged.h"

#include <QDir>
#include <QFile>
#include <QSet>

#include <random>
#include <set>
#include <unordered_set>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Fixtures {

void folder(const QByteArray &path)
{
    // POSIX calls, so names that are not valid UTF-8 keep their bytes.
    for (qsizetype slash = path.indexOf('/', 1); slash != -1; slash = path.indexOf('/', slash + 1))
        ::mkdir(path.left(slash).constData(), 0755);
    ::mkdir(path.constData(), 0755);
}

void file(const QByteArray &path, qint64 size)
{
    folder(path.left(path.lastIndexOf('/')));
    // POSIX calls, so names that are not valid UTF-8 keep their bytes.
    const int fd = ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0)
        qFatal("cannot write %s", path.constData());
    const QByteArray data(size, 'x');
    if (size > 0 && ::write(fd, data.constData(), size_t(size)) != ssize_t(size))
        qFatal("cannot write %s", path.constData());
    ::close(fd);
}

void hardLink(const QByteArray &existing, const QByteArray &newPath)
{
    folder(newPath.left(newPath.lastIndexOf('/')));
    if (::link(existing.constData(), newPath.constData()) != 0)
        qFatal("cannot link %s", newPath.constData());
}

namespace {

template <class Visit>
void walk(const QByteArray &dir, const Visit &visit)
{
    DIR *d = ::opendir(dir.constData());
    if (!d)
        return;
    while (const dirent *entry = ::readdir(d)) {
        const QByteArray name(entry->d_name);
        if (name == "." || name == "..")
            continue;
        const QByteArray path = dir + '/' + name;
        struct stat st;
        if (::lstat(path.constData(), &st) != 0)
            continue;
        if (S_ISREG(st.st_mode))
            visit(path, st);
        else if (S_ISDIR(st.st_mode))
            walk(path, visit);
    }
    ::closedir(d);
}

} // namespace

qint64 allocatedBelow(const QByteArray &root)
{
    std::set<std::pair<dev_t, ino_t>> seen;
    qint64 total = 0;
    walk(root, [&](const QByteArray &, const struct stat &st) {
        if (seen.insert({st.st_dev, st.st_ino}).second)
            total += qint64(st.st_blocks) * 512;
    });
    return total;
}

QByteArrayList filesInWalkOrder(const QByteArray &root)
{
    QByteArrayList out;
    walk(root, [&](const QByteArray &path, const struct stat &) { out.append(path); });
    return out;
}

QString invariantFault(const ScanResult &result, qint64 firstID)
{
    if (!result.root)
        return QStringLiteral("no root");
    QSet<qint64> idsInTree;
    qint64 categorySize = 0;
    for (const auto &[category, total] : result.categoryTotals)
        categorySize += total.size;
    if (categorySize != result.root->size)
        return QStringLiteral("category sizes %1 != root size %2").arg(categorySize).arg(result.root->size);
    if (result.root->fileCount != result.totalFiles)
        return QStringLiteral("root fileCount %1 != totalFiles %2").arg(result.root->fileCount).arg(result.totalFiles);

    std::vector<const DirNode *> stack{result.root.get()};
    while (!stack.empty()) {
        const DirNode *node = stack.back();
        stack.pop_back();
        const QString where = QString::fromUtf8(node->path());
        qint64 size = node->smallFilesSize;
        qint64 count = 0;
        qint64 unreadable = node->hasReadError() ? 1 : 0;
        for (size_t i = 0; i < node->children.size(); ++i) {
            const DirNode &child = *node->children[i];
            unreadable += child.unreadableBelow;
            if (child.parentNode().get() != node)
                return where + QStringLiteral(": child with another parent");
            if (i > 0 && node->children[i - 1]->size < child.size)
                return where + QStringLiteral(": children not largest first");
            size += child.size;
            count += child.fileCount;
            stack.push_back(&child);
        }
        for (size_t i = 0; i < node->files.size(); ++i) {
            const FileItem &f = node->files[i];
            if (f.parentNode().get() != node)
                return where + QStringLiteral(": file with another parent");
            if (f.path != node->path() + '/' + f.name)
                return where + QStringLiteral(": file path ") + QString::fromUtf8(f.path);
            if (i > 0 && node->files[i - 1].size < f.size)
                return where + QStringLiteral(": files not largest first");
            if (f.id < firstID || f.id >= result.lastID || idsInTree.contains(f.id))
                return where + QStringLiteral(": bad or repeated id %1").arg(f.id);
            idsInTree.insert(f.id);
            size += f.size;
            count += 1; // a package stands for at least one file
        }
        if (size != node->size)
            return where + QStringLiteral(": size %1 != parts %2").arg(node->size).arg(size);
        if (node->fileCount < count)
            return where + QStringLiteral(": fileCount %1 below parts %2").arg(node->fileCount).arg(count);
        if (node->smallFilesSize < 0 || node->size < 0)
            return where + QStringLiteral(": negative size");
        if (node->unreadableBelow != unreadable)
            return where + QStringLiteral(": %1 unreadable below, parts %2").arg(node->unreadableBelow).arg(unreadable);
        if (node->isUnreadable() && (node->size != 0 || !node->children.empty() || !node->files.empty()))
            return where + QStringLiteral(": unreadable, yet holds something");
    }
    if (qsizetype(result.files.size()) != idsInTree.size())
        return QStringLiteral("flat list has %1 files, tree %2").arg(result.files.size()).arg(idsInTree.size());
    for (size_t i = 0; i < result.files.size(); ++i) {
        if (!idsInTree.contains(result.files[i].id))
            return QStringLiteral("flat list holds a file the tree doesn't");
        if (i > 0 && result.files[i - 1].size < result.files[i].size)
            return QStringLiteral("flat list not largest first");
    }
    if (result.lastID != firstID + qint64(result.files.size()))
        return QStringLiteral("lastID %1, expected %2").arg(result.lastID).arg(firstID + qint64(result.files.size()));
    for (size_t i = 1; i < result.artifacts.size(); ++i)
        if (result.artifacts[i - 1].size < result.artifacts[i].size)
            return QStringLiteral("artifacts not largest first");
    return {};
}

void randomTree(const QByteArray &root, unsigned seed, int entries)
{
    std::mt19937 random(seed);
    auto pick = [&random](int n) { return int(random() % unsigned(n)); };
    static const char *const names[] = {"a",           "src",       "Lib",      ".hidden",   "node_modules",
                                        "target",      "build",     "Tool.app", "x\ny",      "\xff\xfe",
                                        "caf\xc3\xa9", "e\xcc\x81", "data.bin", "notes.txt", ".venv"};
    std::vector<QByteArray> folders{root};
    std::vector<QByteArray> files;
    folder(root);
    for (int made = 0; made < entries; ++made) {
        // Mostly below recent folders, so that some chains grow deep.
        const QByteArray &at = folders[folders.size() - 1 - size_t(pick(int(std::min<size_t>(folders.size(), 12))))];
        QByteArray name = pick(40) == 0 ? QByteArray(255, char('a' + pick(26))) : QByteArray(names[pick(15)]);
        name += QByteArray::number(made);
        if (name.size() > 255)
            name = name.right(255);
        const QByteArray path = at + '/' + name;
        switch (pick(10)) {
        case 0:
        case 1:
        case 2:
            folder(path);
            folders.push_back(path);
            if (pick(4) == 0)
                file(path + "/Cargo.toml", 10);
            if (pick(4) == 0)
                file(path + "/pyvenv.cfg", 10);
            break;
        case 3:
            if (!files.empty()) {
                hardLink(files[size_t(pick(int(files.size())))], path);
                break;
            }
            [[fallthrough]];
        case 4:
            if (::symlink(pick(2) ? ".." : "nowhere", path.constData()) == 0)
                break;
            [[fallthrough]];
        default:
            file(path, pick(3) == 0 ? 0 : pick(30000));
            files.push_back(path);
        }
    }
    // Build output needs its exact name beside its project file.
    for (size_t i = 0; i < folders.size(); i += 7) {
        file(folders[i] + "/node_modules/m/index.js", 300);
        file(folders[i] + "/Cargo.toml", 20);
        file(folders[i] + "/target/debug/app", 5000);
    }
}

QByteArray describe(const ScanResult &result)
{
    QByteArray out;
    auto number = [](auto... n) { return QByteArray::number(n...); };
    std::vector<std::pair<const DirNode *, int>> stack{{result.root.get(), 0}};
    while (!stack.empty()) {
        auto [node, depth] = stack.back();
        stack.pop_back();
        out += QByteArray(depth, ' ') + node->name + ' ' + number(node->size) + ' ' + number(node->fileCount) + ' ' +
               number(node->smallFilesSize) + ' ' + number(node->unreadableBelow) + ' ' + number(node->readError) +
               (node->partlyRead ? " partly" : "") + ' ' + node->artifactKind.toUtf8() + '\n';
        for (const FileItem &f : node->files)
            out += QByteArray(depth + 1, ' ') + number(f.id) + ' ' + f.name + ' ' + number(f.size) + '\n';
        for (auto it = node->children.rbegin(); it != node->children.rend(); ++it)
            stack.emplace_back(it->get(), depth + 1);
    }
    for (const FileItem &f : result.files)
        out += "file " + number(f.id) + ' ' + f.path + ' ' + number(f.size) + ' ' + number(f.logicalSize) + ' ' +
               number(f.modified, 'f', 9) + ' ' + number(f.accessed, 'f', 9) + ' ' + number(int(f.category)) +
               (f.isPackage ? " package" : "") + ' ' + (f.parentNode() ? f.parentNode()->path() : "-") + '\n';
    for (const auto &[category, total] : result.categoryTotals)
        out += "category " + number(int(category)) + ' ' + number(total.size) + ' ' + number(total.count) + '\n';
    for (const DevArtifact &a : result.artifacts)
        out += "artefact " + a.path + ' ' + a.kind.toUtf8() + ' ' + number(a.size) + ' ' + number(a.fileCount) + '\n';
    out += "totals " + number(result.totalFiles) + ' ' + number(result.totalDirs) + ' ' +
           number(result.unreadableCount) + ' ' + number(result.lastID) + '\n';
    for (const QByteArray &sample : result.unreadableSamples)
        out += "unreadable " + sample + '\n';
    return out;
}

QByteArray asNobody(const std::function<QByteArray()> &body)
{
    if (!runningAsRoot())
        return body();
    const ChildOutcome outcome = runUnprivileged(body);
    if (outcome.status != 0)
        return "child failed with status " + QByteArray::number(outcome.status);
    return outcome.output;
}

} // namespace Fixtures
