// Where the running user's trashed files lie: the home trash and the trash of
// each mounted volume. Stateless; any thread (each call reads the system anew).

#pragma once

#include <QByteArray>
#include <QByteArrayList>

namespace TrashFolders {

// Every mount point of the system (Linux: /proc/self/mountinfo, octal escapes such as \040 decoded,
// byte-exact), skipping kernel interfaces and automounters (proc, sysfs, cgroup*, devpts, autofs, ...),
// so nothing is mounted or hangs by asking. tmpfs stays: /tmp may hold a .Trash-$uid. Empty on other systems.
QByteArrayList mountPoints();

// The running user's trash folders that exist: first home's trash (Xdg::dataHome(home) + "/Trash"),
// then for each mount point TOP: TOP/.Trash/$uid (only when TOP/.Trash is a real folder, not a link,
// with the sticky bit) and TOP/.Trash-$uid. Each must be a real folder (lstat, not a link) owned by
// getuid(); one reached twice (same device and inode, e.g. the home trash's own volume) is listed once.
// TOP "/" gives "/.Trash-$uid". On macOS the list is just home + "/.Trash", if it exists.
QByteArrayList ofUser(const QByteArray &home, const QByteArrayList &mountPoints);

} // namespace TrashFolders
