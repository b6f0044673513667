// The reads of the duplicate search: regular files only, opened so that a path
// swapped for a FIFO or a device can't hang or run forever, and read at fixed
// offsets.

#pragma once

#include <QByteArray>

namespace FileReads {

// Opens a regular file for reading and gives its length. On failure -1, with
// `error` errno, or 0 for a path that is no regular file.
int openRegular(const QByteArray &path, qint64 &length, int &error);

struct ReadResult {
    qint64 bytes = 0;
    bool failed = false; // errno tells why
};

// Reads up to `count` bytes at `offset`, stopping early only at the end of the
// file or on an error. Given the file's `length` (from fstat), a read that ends
// exactly there is taken as the end without asking once more for nothing.
ReadResult readAt(int fd, char *buffer, qint64 count, qint64 offset, qint64 length = -1);

// Closes its descriptor when it goes.
struct Fd {
    int fd = -1;
    Fd(int descriptor) : fd(descriptor) {}
    Fd(const Fd &) = delete;
    Fd &operator=(const Fd &) = delete;
    Fd(Fd &&other) noexcept : fd(other.fd) { other.fd = -1; }
    ~Fd();
};

} // namespace FileReads
