// The part of a removal that touches the disk: runs on a worker with a copy of
// the items and a file-operations object of its own, and touches no model.

#pragma once

#include "DeletionFailure.h"
#include "DeletionItem.h"
#include "FileOperations.h"
#include "FolderIdentity.h"

#include "safety/SafetyProfile.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QHash>
#include <QList>

namespace Removal {

struct Outcome {
    // Path -> bytes that went. A path that had vanished already counts with 0.
    QHash<QByteArray, qint64> freed;
    // What stayed behind, in the order met.
    QList<DeletionFailure> failures;
};

// Removes (or moves to the Trash) each item in order; a failure never stops
// the next one. Right before each item the guard has its last word on the
// item's text and on the place it really leads to (SafetyGuard::lastWord), and
// the file operation then acts through that same open folder. When `reviewed`
// knows the item, its folder must still be the one seen at the review (device
// and inode); one that changed fails the item, and nothing acts elsewhere. A folder item with clearInsideOnFailure that
// will not go whole has its contents removed one by one, down to five levels of folders below it; the folder itself
// then gets no entry in `freed`, only what went inside. Symbolic links are never followed. Whatever the guard keeps
// inside such a folder is reported with its sentence and left alone.
Outcome run(const QList<DeletionItem> &items, bool permanently, FileOperations &operations,
            const SafetyProfile &profile = SafetyProfile::standard());
Outcome run(const QList<DeletionItem> &items, bool permanently, FileOperations &operations,
            const ReviewedFolders &reviewed, const SafetyProfile &profile = SafetyProfile::standard());

// The folder each item lies in, as it is now, for run()'s check.
ReviewedFolders reviewFolders(const QList<DeletionItem> &items);

// Bytes on disk of a path: its allocated size, or for a folder the sum over the
// files below it, each hard-linked file counted once. 0 when it cannot be read.
qint64 measure(const QByteArray &path);

// The names inside a folder, exact bytes, "." and ".." left out; empty (and
// `ok` false) when it cannot be listed.
QByteArrayList listNames(const QByteArray &dir, bool *ok = nullptr);

// Seconds a removal of `count` selected items stays on screen at least:
// 0.55 per item plus 0.9, no less than 1 and no more than 8.
double minimumShowTime(qsizetype count);

} // namespace Removal
