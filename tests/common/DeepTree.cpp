#include "DeepTree.h"

#include <QtGlobal>

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
    // Down to the first folder without folders, emptying each on the way; then up
    // through ".." to remove it from its parent, and on with the parent.
    int fd = ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    std::vector<std::string> names; // the folders entered below `path`
    while (fd >= 0) {
        std::string folder;
        if (DIR *listing = ::fdopendir(::dup(fd))) {
            while (const dirent *entry = ::readdir(listing)) {
                const std::string name = entry->d_name;
                struct stat st;
                if (name == "." || name == ".." || ::fstatat(fd, name.c_str(), &st, AT_SYMLINK_NOFOLLOW) != 0)
                    continue;
                if (!S_ISDIR(st.st_mode))
                    ::unlinkat(fd, name.c_str(), 0);
                else if (folder.empty())
                    folder = name;
            }
            ::closedir(listing);
        }
        const int next = !folder.empty() ? ::openat(fd, folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)
                         : !names.empty() ? ::openat(fd, "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC)
                                          : -1;
        ::close(fd);
        fd = next;
        if (!folder.empty()) {
            names.push_back(folder);
        } else if (fd >= 0) {
            if (::unlinkat(fd, names.back().c_str(), AT_REMOVEDIR) != 0) {
                ::close(fd); // left as it is rather than met again and again
                return;
            }
            names.pop_back();
        }
    }
    ::rmdir(path.constData());
}

} // namespace DeepTree

DeepChain::DeepChain(const QByteArray &base, int depth, int nameLength)
    : m_base(base), m_nameLength(nameLength), m_path(base)
{
    m_fds.push_back(::open(base.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const bool made = m_fds.front() >= 0 && DeepTree::make(base, depth, nameLength, 0, [this](int fd, int) {
                          m_fds.push_back(::fcntl(fd, F_DUPFD_CLOEXEC, 0));
                      });
    if (!made)
        qFatal("cannot build a deep tree");
    for (int level = 1; level <= depth; ++level)
        m_path += '/' + DeepTree::name(level, nameLength);
}

DeepChain::~DeepChain()
{
    for (const int fd : m_fds)
        ::close(fd);
    DeepTree::remove(m_base + '/' + DeepTree::name(1, m_nameLength));
}

QByteArray DeepChain::write(const QByteArray &file, const QByteArray &content)
{
    const int fd = ::openat(m_fds.back(), file.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0 || ::write(fd, content.constData(), size_t(content.size())) != content.size())
        qFatal("cannot write a deep file");
    ::close(fd);
    return m_path + '/' + file;
}

QByteArray DeepChain::symlink(const QByteArray &name, const QByteArray &target)
{
    if (::symlinkat(target.constData(), m_fds.back(), name.constData()) != 0)
        qFatal("cannot make a deep link");
    return m_path + '/' + name;
}
