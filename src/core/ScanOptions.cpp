#include "ScanOptions.h"

#include "Paths.h"
#include "Prefs.h"

ScanOptions ScanOptions::current()
{
    ScanOptions options;
    // A negative number in the store means nothing sensible; the scanner treats 0 as 1.
    options.minTrackedSize = qMax<qint64>(0, Prefs::integer(Prefs::minTrackedSize));
    options.treatPackagesAsFiles = Prefs::boolean(Prefs::treatPackagesAsFiles);
    options.skipHiddenFiles = Prefs::boolean(Prefs::skipHiddenFiles);
    for (const QString &entry : Prefs::list(Prefs::excludedPaths))
        options.excludedPaths.append(Paths::fromText(entry));
    return options;
}
