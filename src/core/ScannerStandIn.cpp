// Stand-in for the scanner while src/scan has no build file of its own: the
// build adds this file only then. It keeps the application and its tests
// linking; it scans nothing. (Path normalisation is already real.)
#include "scan/DiskScanner.h"

namespace DiskScanner {

ScanResultPtr scan(const QByteArray &, const ScanOptions &, qint64, const CancelTokenPtr &, const ProgressCallback &)
{
    return {};
}

DiskUsage usage(const QByteArray &, const CancelTokenPtr &) { return {}; }

} // namespace DiskScanner
