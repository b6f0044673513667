#include "VolumeInfo.h"

#include "Fmt.h"
#include "Paths.h"

#include <QFile>
#include <QSet>
#include <QStorageInfo>

#include <algorithm>

#include <sys/stat.h>

QString VolumeInfo::pathText() const { return Paths::toText(url); }

namespace {

// File systems that hold no user data: kernel interfaces, memory-backed and
// layered mounts, read-only package images.
bool isPseudoFileSystem(const QByteArray &type)
{
    static const QSet<QByteArray> types = {
        "proc",          "sysfs",       "tmpfs",    "devtmpfs",  "devpts",  "cgroup",          "cgroup2",
        "overlay",       "squashfs",    "mqueue",   "debugfs",   "tracefs", "securityfs",      "pstore",
        "bpf",           "configfs",    "fusectl",  "hugetlbfs", "autofs",  "ramfs",           "nsfs",
        "rpc_pipefs",    "binfmt_misc", "efivarfs", "selinuxfs", "nfsd",    "fuse.gvfsd-fuse", "fuse.portal",
        "fuse.snapfuse", "aufs",        "none",     "rootfs",
    };
    return types.contains(type);
}

// Mount points below these belong to the system, not to the user.
bool isSystemMountPoint(const QByteArray &path)
{
    static const char *const prefixes[] = {"/proc", "/sys", "/dev", "/run", "/boot", "/snap", "/var/lib", "/var/snap"};
    // Removable media are mounted below /run/media/USER; those stay.
    if (path.startsWith("/run/media/"))
        return false;
    for (const char *prefix : prefixes)
        if (Paths::isWithin(path, prefix))
            return true;
    return false;
}

#if defined(Q_OS_LINUX)
// A disk that is neither removable nor attached over USB. The kernel's block
// device tree tells; anything it doesn't describe counts as not internal.
bool isInternalDevice(const QByteArray &device)
{
    if (!device.startsWith("/dev/"))
        return false;
    const QByteArray name = Paths::lastComponent(device);
    const QByteArray sys = "/sys/class/block/" + name;
    const QByteArray real = QFile::encodeName(QFile::symLinkTarget(QFile::decodeName(sys)));
    if (real.isEmpty() || real.contains("/usb") || real.contains("/virtual/"))
        return false;
    // A partition has no "removable" file; its disk is the parent folder.
    for (const QByteArray &candidate : {real + "/removable", Paths::parentOf(real) + "/removable"}) {
        QFile file(QFile::decodeName(candidate));
        if (file.open(QIODevice::ReadOnly))
            return file.readAll().trimmed() == "0";
    }
    return false;
}
#else
bool isInternalDevice(const QByteArray &) { return false; }
#endif

} // namespace

void VolumeInfo::sort(QList<VolumeInfo> &volumes)
{
    std::stable_sort(volumes.begin(), volumes.end(), [](const VolumeInfo &a, const VolumeInfo &b) {
        if (a.isRoot != b.isRoot)
            return a.isRoot;
        return a.name < b.name;
    });
}

QList<VolumeInfo> VolumeInfo::mounted()
{
    QList<VolumeInfo> out;
    QSet<QByteArray> devices;
    QList<QStorageInfo> storages = QStorageInfo::mountedVolumes();
    // The shortest mount point of a device wins over its bind mounts.
    std::stable_sort(storages.begin(), storages.end(), [](const QStorageInfo &a, const QStorageInfo &b) {
        return a.rootPath().size() < b.rootPath().size();
    });
    for (const QStorageInfo &storage : std::as_const(storages)) {
        if (!storage.isValid() || !storage.isReady())
            continue;
        const QByteArray path = QFile::encodeName(storage.rootPath());
        if (isPseudoFileSystem(storage.fileSystemType()) || isSystemMountPoint(path))
            continue;
        if (path.startsWith("/snap/") || (path.contains("/snap/") && storage.fileSystemType() == "squashfs"))
            continue;
        const qint64 total = storage.bytesTotal();
        if (total <= 0)
            continue;
        const QByteArray device = storage.device();
        if (device.startsWith("/dev/") && devices.contains(device))
            continue;
        devices.insert(device);

        VolumeInfo v;
        v.url = path;
        v.total = total;
        v.available = qMax<qint64>(0, storage.bytesAvailable());
        v.isRoot = storage.isRoot() || path == "/";
        v.name = storage.name();
        if (v.name.isEmpty())
            v.name = Fmt::displayName(path);
        v.isInternal = isInternalDevice(device);
        out.append(v);
    }
    sort(out);
    return out;
}
