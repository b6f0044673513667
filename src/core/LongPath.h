#pragma once

#include <QByteArray>

#include <sys/stat.h>

// open() and stat() without the PATH_MAX limit of the system calls. A path
// shorter than PATH_MAX goes straight to the call; a longer one is walked in
// chunks of whole components, each below PATH_MAX, from folder descriptor to
// folder descriptor. Links are followed as the plain calls follow them; errno is
// set as they would set it.
namespace LongPath {

// As ::open, with O_CLOEXEC added. -1 on failure.
int open(const QByteArray &path, int flags, mode_t mode = 0);

// As ::stat (`follow`) or ::lstat. False on failure.
bool stat(const QByteArray &path, struct stat &st, bool follow);

} // namespace LongPath
