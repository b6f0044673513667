// The part of a removal that touches the disk: runs on a worker with a copy of
// the items and a file-operations object of its own, and touches no model.

#pragma once

#include "DeletionFailure.h"
#include "DeletionItem.h"
#include "FileOperations.h"
#include "ReviewedItem.h"
#include "TrashedItem.h"

#include "core/CancelToken.h"
#include "safety/SafetyProfile.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QHash>
#include <QList>

#include <functional>

namespace Removal {

struct Outcome {
    // Path -> bytes that went. A path that had vanished already counts with 0.
    QHash<QByteArray, qint64> freed;
    // What stayed behind, in the order met.
    QList<DeletionFailure> failures;
    // What went to a Trash, in the order moved.
    QList<TrashedItem> trashed;
    // Folders removed for good that stayed because something inside would not
    // go: path -> bytes that went from inside them. They are not in `freed`.
    QHash<QByteArray, qint64> partlyGone;
    // Items not reached because the run was stopped.
    qsizetype notReached = 0;
    // Bytes that really came free on the volumes of a permanent removal (see
    // spaceCameFree); 0 for a move to the Trash, which frees nothing yet.
    qint64 spaceFreed = 0;
};

// How a run goes besides its items.
struct Options {
    // How each item was at the review; an item it knows is acted on only while
    // it is still that item in that folder.
    ReviewedItems reviewed;
    SafetyProfile profile = SafetyProfile::standard();
    // Called on the worker as each item lands in a Trash, before the next one.
    std::function<void(const TrashedItem &item)> trashed;
    // Stops the run between items.
    CancelTokenPtr token;
    // Called on the worker before each item, with the items done so far.
    std::function<void(qsizetype done, qsizetype total, const QByteArray &path)> progress;
};

// Removes (or moves to the Trash) each item in order; a failure never stops
// the next one. Right before each item the guard has its last word on the
// item's text and on the place it really leads to (SafetyGuard::lastWord), and
// the file operation then acts through that same open folder. When the review
// knows the item, its folder must still be the one seen then (device and
// inode), and the item itself the one seen then (device, inode and type, and
// for anything but a folder its size and modification time); one that changed
// is left alone and fails with the reason `changedSinceReview`. A folder item
// with clearInsideOnFailure that will not go whole has its contents removed one
// by one, down to five levels of folders below it; the folder itself then gets
// no entry in `freed`, only what went inside. Symbolic links are never
// followed. Whatever the guard keeps inside such a folder is reported with its
// sentence and left alone.
Outcome run(const QList<DeletionItem> &items, bool permanently, FileOperations &operations, const Options &options);
Outcome run(const QList<DeletionItem> &items, bool permanently, FileOperations &operations,
            const SafetyProfile &profile = SafetyProfile::standard());

// Each item as it is now, for run()'s check: its real folder, and the item
// when it exists.
ReviewedItems review(const QList<DeletionItem> &items);

// What a removal freed on one volume, from its free bytes before and after and
// the bytes the removal expected to free there (the sum of what went). The
// measurement holds unless the free space moved for other reasons by as much as
// the expected figure itself (or could not be read); then the expected figure
// stands in.
qint64 spaceCameFree(qint64 before, qint64 after, qint64 expected);

// Free bytes for unprivileged use on the volume holding `path` (or its nearest
// existing folder); -1 when it cannot be read.
qint64 freeBytes(const QByteArray &path);

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
