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

// Runs `body` as the unprivileged user "nobody" in a forked child when this
// process is root (as in CI), else directly, and returns what it returned. The
// child does no more than scan and format a few numbers before it exits.
QByteArray asNobody(const std::function<QByteArray()> &body);

} // namespace Fixtures
