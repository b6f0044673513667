// open() and stat() without the PATH_MAX limit of the system calls: a longer
// path is walked in chunks of whole components, each below PATH_MAX, from folder
// descriptor to folder descriptor. Links are followed and errno is set as the
// plain calls would. No state; any thread.

#pragma once

#include <QByteArray>

#include <sys/stat.h>

namespace LongPath {

// As ::open, with O_CLOEXEC added. -1 on failure.
int open(const QByteArray &path, int flags, mode_t mode = 0);

// As ::stat (`follow`) or ::lstat. False on failure.
bool stat(const QByteArray &path, struct stat &st, bool follow);

} // namespace LongPath
