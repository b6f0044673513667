// Whole reads and writes on file descriptors. Any thread.

#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace FdIo {

// Writes every byte of `data` to `fd`, going on after a short write or an
// interrupted call. False on any other failure, with errno telling why (EIO
// when the system wrote nothing and gave no reason).
bool writeAll(int fd, QByteArrayView data);

// The whole content of the file `name` in the folder `dirFd`, opened without
// following a link. What could be read; `error` (when given) gets the errno of
// a failed open or read, and is left alone otherwise.
QByteArray readAt(int dirFd, const char *name, int *error = nullptr);

} // namespace FdIo
