// Whether the process may read what only Full Disk Access makes readable. Tries
// the probe files below `home` that exist; with none present there is nothing
// that could show a lack of access, and the answer is true. Blocking; any thread.

#pragma once

#include <QByteArray>
#include <QList>

namespace FullDiskAccess {
QList<QByteArray> probePaths(const QByteArray &home);
bool probe(const QByteArray &home);
} // namespace FullDiskAccess
