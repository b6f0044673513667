// One walk of a directory tree into a ScanResult and the measuring of one path.
// No instances; everything is static and runs on the calling thread, a worker.

#pragma once

#include "core/CancelToken.h"
#include "core/DiskUsage.h"
#include "core/Paths.h"
#include "core/ScanOptions.h"
#include "core/ScanProgress.h"
#include "core/ScanResult.h"

#include <QByteArray>
#include <QString>

#include <functional>

class WalkListener;

namespace DiskScanner {

// Called on the scanning worker with each published snapshot; it must itself get
// the record to the main thread.
using ProgressCallback = std::function<void(const ScanProgress &)>;

// How a scan reads the disk. `automatic` lists folders on several threads
// ahead of the walk where the machine has more than one core; the result is the
// same either way.
enum class Walking { automatic, oneThread, parallel };

// Walks `root` on the calling thread (a background worker), which builds the
// result. Returns null when cancelled, when the walk could not start, or when
// the root is no directory. FileItem ids start at `firstID`; the result's lastID
// is one past the last. `listener`, when given, sees every event of the walk.
ScanResultPtr scan(const QByteArray &root, const ScanOptions &options, qint64 firstID, const CancelTokenPtr &token,
                   const ProgressCallback &progress, Walking walking = Walking::automatic,
                   WalkListener *listener = nullptr);

// Reads a saved scan in ncdu's JSON export format from the file `saved` ("-"
// for standard input) into a result, by the same rules as a scan of the disk
// (allocated sizes, hard links once, categories, artefacts, the options'
// threshold and exclusions). Its root is the folder that was scanned, its date
// when that was, and its `importedFrom` the file. Null when cancelled, or with
// `error` set when the file can't be read or is not such a saved scan.
ScanResultPtr importNcdu(const QByteArray &saved, const ScanOptions &options, qint64 firstID,
                         const CancelTokenPtr &token, const ProgressCallback &progress, QString *error);

// One entry of a folder as a scan of that folder would record it, for putting
// back into a result what came back to disk: a result whose root is a node for
// the folder `path` lies in, holding only that entry (as a child with its tree,
// as a listed file, or in smallFilesSize), with its category totals, its
// artefacts (the entry itself judged beside its neighbours) and its FileItems
// numbered from `firstID`. Null when the entry is gone, is left out by the
// options (hidden, excluded) or counts for nothing (a link), or when cancelled.
ScanResultPtr scanEntry(const QByteArray &path, const ScanOptions &options, qint64 firstID,
                        const CancelTokenPtr &token = {});

// Allocated size and file count below a path. `token` may be null.
DiskUsage usage(const QByteArray &of, const CancelTokenPtr &token = {});

// The folders a scan of `root` never enters, as the texts its walk compares: the
// user's `excluded` folders (normalised) and the system's own (/proc, ...). Each
// of them that lies below the place `root` really is (resolved once; the root may
// be a symbolic link or lie below one) is also given as the walk spells it, `root`
// followed by the rest, so that a link to "/" skips "/proc" as "/" does.
QByteArrayList skippedPaths(const QByteArray &root, const QByteArrayList &excluded);

} // namespace DiskScanner
