#include "DeepTree.h"

#include <string>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace DeepTree {

QByteArray name(int level, int length)
{
    QByteArray out = "d" + QByteArray::number(level);
    return out.leftJustified(length, 'x');
}

bool make(const QByteArray &root, int depth, int nameLength, int files,
          const std::function<void(int fd, int level)> &atLevel)
{
    int fd = ::open(root.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int level = 1; fd >= 0 && level <= depth; ++level) {
        const QByteArray dir = name(level, nameLength);
        const int next = ::mkdirat(fd, dir.constData(), 0755) == 0
                             ? ::openat(fd, dir.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)
                             : -1;
        ::close(fd);
        fd = next;
        for (int i = 0; fd >= 0 && i < files; ++i) {
            const int file =
                ::openat(fd, ("f" + QByteArray::number(i)).constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
            if (file < 0 || ::write(file, "x", 1) != 1) {
                ::close(fd);
                fd = -1;
            }
            if (file >= 0)
                ::close(file);
        }
        if (fd >= 0 && atLevel)
            atLevel(fd, level);
    }
    if (fd < 0)
        return false;
    ::close(fd);
    return true;
}

void remove(const QByteArray &path)
{
    const QByteArray base = path.left(path.lastIndexOf('/') + 1);
    std::vector<QByteArray> pending{path};
    qint64 moved = 0;
    while (!pending.empty()) {
        const QByteArray dir = pending.back();
        pending.pop_back();
        const int fd = ::open(dir.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        DIR *listing = fd >= 0 ? ::fdopendir(::dup(fd)) : nullptr;
        std::vector<std::string> names;
        while (const dirent *entry = listing ? ::readdir(listing) : nullptr)
            if (std::string(entry->d_name) != "." && std::string(entry->d_name) != "..")
                names.emplace_back(entry->d_name);
        if (listing)
            ::closedir(listing);
        for (const std::string &entry : names) {
            struct stat st;
            if (::fstatat(fd, entry.c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(st.st_mode)) {
                const QByteArray up =
                    base + ".deep-tree-" + QByteArray::number(::getpid()) + '-' + QByteArray::number(moved++);
                if (::renameat(fd, entry.c_str(), AT_FDCWD, up.constData()) == 0)
                    pending.push_back(up);
            } else {
                ::unlinkat(fd, entry.c_str(), 0);
            }
        }
        if (fd >= 0)
            ::close(fd);
        ::rmdir(dir.constData());
    }
}

} // namespace DeepTree
