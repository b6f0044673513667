#pragma once

#include "core/CancelToken.h"

#include <QByteArray>

#include <functional>
#include <memory>
#include <optional>

// Reading and SHA-256 hashing of file contents for the duplicate search, over
// POSIX reads and OpenSSL's libcrypto. One ContentHasher per thread: it owns the
// digest context and a 4 MiB read buffer that every whole-file hash reuses, so
// memory stays flat however large the file.
class ContentHasher
{
public:
    static constexpr qint64 sampleSize = 65536;          // bytes read from each end in a fingerprint
    static constexpr qint64 tailThreshold = 131073;      // from this logical size on, the tail is sampled too
    static constexpr qint64 chunkSize = 4 * 1024 * 1024; // one read of a whole-file hash

    ContentHasher();
    ~ContentHasher();
    ContentHasher(const ContentHasher &) = delete;
    ContentHasher &operator=(const ContentHasher &) = delete;

    struct Fingerprint {
        QByteArray digest; // lower-case hex
        // Set when the sample was the file's whole content, read cleanly to its
        // end: then `digest` is also the whole-file digest, of `bytes` bytes.
        bool whole = false;
        qint64 bytes = 0;
    };

    // SHA-256 of the first 64 KiB and, from `logicalSize` 131,073 on, of the
    // 64 KiB that end at `logicalSize`. A failed read adds nothing. Absent only
    // when the file can't be opened (or is no regular file).
    std::optional<Fingerprint> fingerprint(const QByteArray &path, qint64 logicalSize);

    // SHA-256 of the whole file in 4 MiB reads, with `onBytes` told the length of
    // each. The token is read before each read. A read error ends the file as its
    // end would. Absent when the file can't be opened or the token was cancelled.
    std::optional<QByteArray> fullHash(const QByteArray &path, const CancelToken &token,
                                       const std::function<void(qint64)> &onBytes);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
