// Writing a whole buffer to a file descriptor. Any thread.

#pragma once

#include <QByteArrayView>

// Writes every byte of `data` to `fd`, going on after a short write or an
// interrupted call. False on any other failure, with errno telling why (EIO
// when the system wrote nothing and gave no reason).
bool writeAll(int fd, QByteArrayView data);
