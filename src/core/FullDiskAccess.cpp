#include "FullDiskAccess.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace FullDiskAccess {

QList<QByteArray> probePaths(const QByteArray &home)
{
    return {
        home + "/Library/Application Support/com.apple.TCC/TCC.db",
        home + "/Library/Safari/CloudTabs.db",
        home + "/Library/Safari/Bookmarks.plist",
    };
}

bool probe(const QByteArray &home)
{
    bool anyExists = false;
    for (const QByteArray &path : probePaths(home)) {
        struct stat st {};
        // Existence needs no right beyond searching the folders above.
        if (::stat(path.constData(), &st) != 0)
            continue;
        anyExists = true;
        const int fd = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
        if (fd >= 0) {
            ::close(fd);
            return true;
        }
    }
    return !anyExists;
}

} // namespace FullDiskAccess
