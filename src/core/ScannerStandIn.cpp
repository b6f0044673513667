// Stand-in for the scanner while src/scan has no sources of its own: the build
// adds this file only then. It keeps the application and its tests linking; it
// scans nothing.
#include "scan/DiskScanner.h"

#include "core/Platform.h"

namespace DiskScanner {

ScanResultPtr scan(const QByteArray &, const ScanOptions &, qint64, const CancelTokenPtr &, const ProgressCallback &)
{
    return {};
}

DiskUsage usage(const QByteArray &, const CancelTokenPtr &) { return {}; }

QByteArray normalize(QByteArrayView path)
{
    QByteArray text = path.toByteArray();
    if (text == "~" || text.startsWith("~/"))
        text = Platform::homeDirectory() + text.mid(1);
    const bool absolute = text.startsWith('/');
    QByteArrayList parts;
    for (const QByteArray &piece : text.split('/')) {
        if (piece.isEmpty() || piece == ".")
            continue;
        if (piece == "..") {
            if (!parts.isEmpty() && parts.last() != "..")
                parts.removeLast();
            else if (!absolute)
                parts.append(piece);
            continue;
        }
        parts.append(piece);
    }
    const QByteArray joined = parts.join('/');
    return absolute ? "/" + joined : (joined.isEmpty() ? QByteArray(".") : joined);
}

} // namespace DiskScanner
