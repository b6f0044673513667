// One scanned directory. Nodes are shared; each owns its children strongly and
// points to its parent weakly, so dropping the root frees the whole tree. Built by
// the scanning worker, then read on the main thread.

#pragma once

#include "FileItem.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <vector>

class DirNode;
using DirNodePtr = std::shared_ptr<DirNode>;

// A node kept alive elsewhere sees its parent as absent once the tree is gone.
//
// Kept small on purpose: a whole disk has millions of folders. Only files of at
// least the tracking threshold get a FileItem; the rest are summed in
// `smallFilesSize`.
//
// Invariants once a scan is done:
//   size      == sum(children.size) + sum(files.size) + smallFilesSize
//   fileCount == sum(children.fileCount) + plain files directly here (listed or
//                not) + the files inside each package listed here
//   unreadableBelow == sum(children.unreadableBelow) + (readError != 0)
class DirNode
{
public:
    explicit DirNode(QByteArray name, const DirNodePtr &parent = {});
    ~DirNode();

    DirNode(const DirNode &) = delete;
    DirNode &operator=(const DirNode &) = delete;

    // Last component; for the root of a tree the whole scanned path.
    const QByteArray name;
    std::weak_ptr<DirNode> parent;
    qint64 size = 0;
    qint64 fileCount = 0;
    std::vector<DirNodePtr> children;
    std::vector<FileItem> files;
    qint64 smallFilesSize = 0;
    // Developer artefact label ("node_modules", ...); null when not an artefact.
    QString artifactKind;
    // Folders at or below this one that could not be read, wholly or in part;
    // lets a reader find them without walking the parts of the tree that were
    // read whole.
    qint32 unreadableBelow = 0;
    // Why this folder could not be read (an errno value), or 0 when it was.
    // With `partlyRead` false nothing of it could be listed: it stands empty,
    // its size unknown rather than zero. With `partlyRead` true it was listed
    // but some of its entries could not be examined or reached; what was read
    // is counted.
    qint16 readError = 0;
    bool partlyRead = false;

    // Nothing of it could be listed.
    bool isUnreadable() const { return readError != 0 && !partlyRead; }
    // Wholly or in part.
    bool hasReadError() const { return readError != 0; }
    // The system's words for `readError` ("Permission denied").
    static QString errorText(int error);

    DirNodePtr parentNode() const { return parent.lock(); }

    // Full path by walking up; not cached.
    QByteArray path() const;

    // Sorts children and files of the whole subtree by size, largest first.
    // Stable, so equal sizes keep the order of the disk walk. Uses an explicit
    // stack: a tree may be deeper than the call stack.
    void sortRecursively();
};
