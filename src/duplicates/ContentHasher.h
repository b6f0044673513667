// Reading and SHA-256 hashing of file contents for the duplicate search, over
// POSIX reads and OpenSSL's libcrypto. One ContentHasher per thread: it owns the
// digest context and a 4 MiB read buffer that every whole-file hash reuses, so
// memory stays flat however large the file.

#pragma once

#include "core/CancelToken.h"

#include <QByteArray>

#include <functional>
#include <memory>
#include <optional>

// A file that can't be opened, is no regular file or fails a read gives no
// digest; error() then tells why.
class ContentHasher
{
public:
    static constexpr qint64 sampleSize = 65536;          // bytes read from each end in a fingerprint
    static constexpr qint64 tailThreshold = 131073;      // from this logical size on, the tail is sampled too
    static constexpr qint64 chunkSize = 4 * 1024 * 1024; // one read of a whole-file hash
    static constexpr qint64 zeroBlock = 65536;           // unit of the zero-run form

    // What a whole-file hash digests. `bytes`: the content itself, so the digest
    // is its SHA-256. `zeroRuns`: a header with the length, then the content in
    // 64 KiB blocks at fixed offsets, each run of all-zero blocks as 'Z' and its
    // count and each other block as 'D' and its bytes. The same bytes give the
    // same form whether the zeros are holes or written, so digests of one form
    // stay exact; holes found with SEEK_DATA/SEEK_HOLE are never read.
    enum class Form { bytes, zeroRuns };

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
    // 64 KiB that end at `logicalSize`. Absent when the file can't be opened, is
    // no regular file or a read fails.
    std::optional<Fingerprint> fingerprint(const QByteArray &path, qint64 logicalSize);

    // SHA-256 of the whole file in `form`, read in reads of up to 4 MiB, with
    // `onBytes` told the bytes each covered (skipped holes too). The token is read
    // before each read. Absent when the file can't be opened, a read fails or the
    // token was cancelled.
    std::optional<QByteArray> fullHash(const QByteArray &path, const CancelToken &token,
                                       const std::function<void(qint64)> &onBytes, Form form = Form::bytes);

    // errno of the last failure; 0 when the path was no regular file.
    int error() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
