#pragma once

#include "core/ScanResult.h"

#include <QByteArray>
#include <QByteArrayList>

#include <functional>

// Real trees on disk for the scanner's tests, and answers computed without the
// scanner to check it against.
namespace Fixtures {

// Writes `size` bytes (of real data, so blocks are allocated) at `path`, making
// the folders above it.
void file(const QByteArray &path, qint64 size = 100);
void folder(const QByteArray &path);
void hardLink(const QByteArray &existing, const QByteArray &newPath);

// Allocated bytes of the regular files below `root`, each inode once, found with
// a plain recursive readdir.
qint64 allocatedBelow(const QByteArray &root);

// Regular files below `root` in the order a walk without sorting meets them
// (readdir order, depth first).
QByteArrayList filesInWalkOrder(const QByteArray &root);

// Checks the tree's invariants on every node and the result's own consistency;
// returns a description of the first fault, or an empty text.
QString invariantFault(const ScanResult &result, qint64 firstID);

// A tree of about `entries` entries below `root`, the same for the same seed:
// folders of varied widths and depths, files of varied sizes, hard links across
// folders, symbolic links, hidden, odd and 255-byte names, packages and build
// output beside their project files.
void randomTree(const QByteArray &root, unsigned seed, int entries);

// Every figure of a result, its tree in order, as text: equal texts, equal
// results (the duration and date aside).
QByteArray describe(const ScanResult &result);

// Runs `body` as the unprivileged user "nobody" in a forked child when this
// process is root (as in CI), else directly, and returns what it returned. The
// child does no more than scan and format a few numbers before it exits.
QByteArray asNobody(const std::function<QByteArray()> &body);

} // namespace Fixtures
