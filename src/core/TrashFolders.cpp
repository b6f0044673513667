#include "TrashFolders.h"

#include "Paths.h"
#include "Xdg.h"

#include <QFile>
#include <QSet>

#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace {

#if defined(Q_OS_LINUX)
// Mounts whose folders hold no user's files and which may hang or mount
// something when looked into: kernel interfaces, automounters, the desktop's
// virtual file systems.
bool isSkipped(const QByteArray &type)
{
    static const QSet<QByteArray> types = {
        "proc",    "sysfs",      "cgroup",     "cgroup2",  "devpts",    "devtmpfs",    "autofs",          "mqueue",
        "debugfs", "tracefs",    "securityfs", "pstore",   "bpf",       "configfs",    "fusectl",         "hugetlbfs",
        "nsfs",    "rpc_pipefs", "nfsd",       "efivarfs", "selinuxfs", "binfmt_misc", "fuse.gvfsd-fuse", "fuse.portal",
    };
    return types.contains(type);
}

// A field of mountinfo with its octal escapes (\040 for a space, \012 for a
// newline, \134 for a backslash...) turned back into the bytes they stand for.
QByteArray unescape(QByteArrayView field)
{
    QByteArray out;
    out.reserve(field.size());
    auto isOctal = [](char c) { return c >= '0' && c <= '7'; };
    for (qsizetype i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 3 < field.size() && isOctal(field[i + 1]) && isOctal(field[i + 2]) &&
            isOctal(field[i + 3])) {
            out.append(char(((field[i + 1] - '0') << 6) | ((field[i + 2] - '0') << 3) | (field[i + 3] - '0')));
            i += 3;
        } else {
            out.append(field[i]);
        }
    }
    return out;
}
#endif

// A real folder (not a link) owned by the running user, not seen before.
bool takeFolder(const QByteArray &path, QSet<std::pair<dev_t, ino_t>> &seen)
{
    struct stat st {};
    if (::lstat(path.constData(), &st) != 0 || !S_ISDIR(st.st_mode) || st.st_uid != ::getuid())
        return false;
    const std::pair<dev_t, ino_t> key{st.st_dev, st.st_ino};
    if (seen.contains(key))
        return false;
    seen.insert(key);
    return true;
}

} // namespace

namespace TrashFolders {

QByteArrayList mountPoints()
{
    QByteArrayList out;
#if defined(Q_OS_LINUX)
    QFile file(QStringLiteral("/proc/self/mountinfo"));
    if (!file.open(QIODevice::ReadOnly))
        return out;
    // Read whole (the file is generated as it is read, a line at a time).
    const QByteArray text = file.readAll();
    QSet<QByteArray> listed;
    for (const QByteArray &line : text.split('\n')) {
        // ID PARENT MAJOR:MINOR ROOT MOUNTPOINT OPTIONS [OPTIONAL...] - TYPE SOURCE SUPEROPTIONS
        const QByteArrayList fields = line.split(' ');
        const qsizetype dash = fields.indexOf("-", 6);
        if (fields.size() < 5 || dash < 0 || dash + 1 >= fields.size())
            continue;
        if (isSkipped(unescape(fields[dash + 1])))
            continue;
        const QByteArray point = unescape(fields[4]);
        if (!point.startsWith('/') || listed.contains(point))
            continue;
        listed.insert(point);
        out.append(point);
    }
#endif
    return out;
}

QByteArrayList ofUser(const QByteArray &home, const QByteArrayList &mountPoints)
{
    QByteArrayList out;
    QSet<std::pair<dev_t, ino_t>> seen;
    auto consider = [&](const QByteArray &path) {
        if (takeFolder(path, seen))
            out.append(path);
    };
#if defined(Q_OS_MACOS)
    Q_UNUSED(mountPoints);
    consider(Paths::join(home, ".Trash"));
#else
    consider(Xdg::dataHome(home) + "/Trash");
    const QByteArray uid = QByteArray::number(::getuid());
    for (const QByteArray &top : mountPoints) {
        const QByteArray shared = Paths::join(top, ".Trash");
        struct stat st {};
        if (::lstat(shared.constData(), &st) == 0 && S_ISDIR(st.st_mode) && (st.st_mode & S_ISVTX))
            consider(shared + '/' + uid);
        consider(Paths::join(top, ".Trash-" + uid));
    }
#endif
    return out;
}

} // namespace TrashFolders
