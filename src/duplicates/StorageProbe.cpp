#include "StorageProbe.h"

#include <QHash>

#ifdef Q_OS_LINUX
#include <QFile>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <linux/magic.h>
#endif

namespace StorageProbe {

#ifdef Q_OS_LINUX

namespace {

// "0" or "1" from a sysfs attribute; -1 when it can't be read.
int readFlag(const QByteArray &file)
{
    QFile f(QString::fromLocal8Bit(file));
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray text = f.read(8).trimmed();
    return text == "0" ? 0 : text == "1" ? 1 : -1;
}

// True when the device holding `path` does not rotate. A partition has no queue
// of its own; its disk, one level up in sysfs, has.
bool nonRotational(dev_t device, const QByteArray &path)
{
    if (major(device) == 0) {
        // Anonymous devices: memory file systems are the only ones known here.
        struct statfs fs {};
        if (::statfs(path.constData(), &fs) != 0)
            return false;
        return fs.f_type == TMPFS_MAGIC || fs.f_type == RAMFS_MAGIC;
    }
    const QByteArray base =
        "/sys/dev/block/" + QByteArray::number(major(device)) + ':' + QByteArray::number(minor(device));
    int flag = readFlag(base + "/queue/rotational");
    if (flag < 0)
        flag = readFlag(base + "/../queue/rotational");
    return flag == 0;
}

// True when every page of the file is in the page cache. Mapping without
// touching the pages reads nothing from the disk.
bool resident(const QByteArray &path, qint64 length)
{
    if (length <= 0)
        return true;
    const int fd = ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (fd < 0)
        return true; // it will fail to open when hashed too, at no seek cost
    void *map = ::mmap(nullptr, size_t(length), PROT_READ, MAP_SHARED, fd, 0);
    ::close(fd);
    if (map == MAP_FAILED)
        return false;
    const long page = ::sysconf(_SC_PAGESIZE);
    const size_t pages = size_t((length + page - 1) / page);
    std::vector<unsigned char> flags(pages);
    bool all = ::mincore(map, size_t(length), flags.data()) == 0;
    for (size_t i = 0; all && i < pages; ++i)
        all = flags[i] & 1;
    ::munmap(map, size_t(length));
    return all;
}

} // namespace

bool allSeekFree(const std::vector<QByteArray> &paths)
{
    QHash<dev_t, bool> devices;
    for (const QByteArray &path : paths) {
        struct stat st {};
        if (::stat(path.constData(), &st) != 0)
            continue; // gone: costs no seek
        auto known = devices.constFind(st.st_dev);
        if (known == devices.constEnd())
            known = devices.insert(st.st_dev, nonRotational(st.st_dev, path));
        if (*known)
            continue;
        if (!resident(path, qint64(st.st_size)))
            return false;
    }
    return true;
}

#else

bool allSeekFree(const std::vector<QByteArray> &) { return false; }

#endif

} // namespace StorageProbe
