// A made-up home folder, volume and Deep Clean figures for showing the
// application without touching any file. Fixed data; no instances; any thread.

#pragma once

#include "core/DiskUsage.h"
#include "core/JunkEntry.h"
#include "core/Platform.h"
#include "core/ScanResult.h"
#include "core/VolumeInfo.h"

#include <QByteArrayList>
#include <QHash>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

namespace Demo {

// True when the process arguments hold "-demo" anywhere. Decided once, on the
// first call.
bool isOn();
// Whether these arguments turn demo mode on.
bool isOn(const QByteArrayList &arguments);

// The home folder the demo result stands for, named as the platform names
// homes: "/Users/sample" on macOS, "/home/sample" on Linux.
QByteArray home(Platform platform = Platform::current());

// The one demo volume, the system's disk named as the platform names it
// ("Macintosh HD", "File System").
VolumeInfo volume(Platform platform = Platform::current());

// Deep Clean figures by location id of the platform's catalogue; every row
// exists and is readable.
QMap<QString, DiskUsage> measurements(Platform platform = Platform::current());

// What each location of measurements() holds, largest first; the sizes of a
// location's entries add up to its figure.
QHash<QString, QList<JunkEntry>> contents(Platform platform = Platform::current());

// Whether a file belongs to the demo home folder rather than a real scan.
bool isDemoPath(QByteArrayView path, Platform platform = Platform::current());

// A fresh scan result of the demo home folder, dated relative to now, with file
// ids from `firstID` on. The same `firstID` gives the same ids. Its twins (files
// of identical content) are exactly its files of equal size. The folders are
// those usual on `platform`, in its names ("Movies" and "Library" on macOS,
// "Videos" and the XDG folders on Linux).
ScanResultPtr scanResult(qint64 firstID, Platform platform = Platform::current());

} // namespace Demo
