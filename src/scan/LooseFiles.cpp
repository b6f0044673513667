#include "LooseFiles.h"

#include "core/AllocatedSize.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace LooseFiles {

QList<File> list(const QByteArray &folder, const QSet<QByteArray> &known, bool skipHidden)
{
    QList<File> out;
    const int fd = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return out;
    DIR *dir = ::fdopendir(fd);
    if (!dir) {
        ::close(fd);
        return out;
    }
    const QByteArray prefix = folder.endsWith('/') ? folder : folder + '/';
    while (const dirent *ent = ::readdir(dir)) {
        const QByteArray name(ent->d_name);
        if (name == "." || name == ".." || known.contains(name))
            continue;
        if (skipHidden && name.startsWith('.'))
            continue;
        struct stat st;
        if (::fstatat(fd, ent->d_name, &st, AT_SYMLINK_NOFOLLOW) != 0 || S_ISDIR(st.st_mode))
            continue;
        out.append({prefix + name, allocatedSize(st)});
    }
    ::closedir(dir); // closes fd too
    return out;
}

} // namespace LooseFiles
