#include "StorageProbe.h"

#include <QHash>

#ifdef Q_OS_LINUX
#include "core/LongPath.h"

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
        const int fd = LongPath::open(path, O_PATH); // needs no right to read the file
        const bool known = fd >= 0 && ::fstatfs(fd, &fs) == 0;
        if (fd >= 0)
            ::close(fd);
        if (!known)
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

// Bytes of the file that are not in the page cache. Mapping without touching
// the pages reads nothing from the disk.
qint64 uncached(const QByteArray &path, qint64 length)
{
    if (length <= 0)
        return 0;
    const int fd = LongPath::open(path, O_RDONLY | O_NOCTTY | O_NONBLOCK);
    if (fd < 0)
        return 0; // it will fail to open when hashed too, at no seek cost
    void *map = ::mmap(nullptr, size_t(length), PROT_READ, MAP_SHARED, fd, 0);
    ::close(fd);
    if (map == MAP_FAILED)
        return length;
    const qint64 page = ::sysconf(_SC_PAGESIZE);
    std::vector<unsigned char> flags(size_t((length + page - 1) / page));
    qint64 missing = 0;
    if (::mincore(map, size_t(length), flags.data()) != 0) {
        missing = length;
    } else {
        for (const unsigned char flag : flags)
            missing += (flag & 1) ? 0 : page;
    }
    ::munmap(map, size_t(length));
    return std::min(missing, length);
}

} // namespace

bool allSeekFree(const std::vector<QByteArray> &paths)
{
    struct File {
        const QByteArray *path;
        qint64 length;
    };
    std::vector<File> onRotating;
    qint64 total = 0;
    QHash<dev_t, bool> devices;
    for (const QByteArray &path : paths) {
        struct stat st {};
        if (!LongPath::stat(path, st, true))
            continue; // gone: costs no seek
        total += qint64(st.st_size);
        auto known = devices.constFind(st.st_dev);
        if (known == devices.constEnd())
            known = devices.insert(st.st_dev, nonRotational(st.st_dev, path));
        if (!*known)
            onRotating.push_back({&path, qint64(st.st_size)});
    }
    const qint64 allowed = total / 32;
    qint64 missing = 0;
    for (const File &file : onRotating) {
        missing += uncached(*file.path, file.length);
        if (missing > allowed)
            return false;
    }
    return true;
}

#else

bool allSeekFree(const std::vector<QByteArray> &) { return false; }

#endif

} // namespace StorageProbe
