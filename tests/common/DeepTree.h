#pragma once

#include <QByteArray>

#include <functional>

// Trees deeper than any path the system takes whole (PATH_MAX): made and removed
// relative to open descriptors, one level at a time.
namespace DeepTree {

// The name of the folder at `level` (1 for the first below the root): "d" and
// the level, padded with 'x' to `length` bytes.
QByteArray name(int level, int length);

// Makes `depth` nested folders below the existing folder `root`, each holding
// `files` one-byte files "f0", "f1", ...; `atLevel` may add more through the
// folder's descriptor. False when a system call fails.
bool make(const QByteArray &root, int depth, int nameLength, int files,
          const std::function<void(int fd, int level)> &atLevel = {});

// Removes `path` and everything below it, however deep, relative to descriptors.
void remove(const QByteArray &path);

} // namespace DeepTree
