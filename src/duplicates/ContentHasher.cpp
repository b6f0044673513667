#include "ContentHasher.h"

#include "FileReads.h"
#include "Sha256.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using FileReads::Fd;
using FileReads::openRegular;
using FileReads::readAt;
using FileReads::ReadResult;

namespace {

bool allZero(const char *data, qint64 length)
{
    return length == 0 || (data[0] == 0 && std::memcmp(data, data + 1, size_t(length - 1)) == 0);
}

} // namespace

struct ContentHasher::Private {
    Sha256 hash;
    std::unique_ptr<char[]> sample{new char[sampleSize]};
    std::unique_ptr<char[]> chunk; // allocated on the first whole-file hash
    int error = 0;

    std::nullopt_t fail()
    {
        error = errno;
        return std::nullopt;
    }
    std::optional<QByteArray> zeroRuns(int fd, qint64 length, const CancelToken &token,
                                       const std::function<void(qint64)> &onBytes);

    void start() { hash.reset(); }
    void add(const char *data, qint64 length) { hash.add(data, length); }
    QByteArray finish() { return hash.finish(); }
};

ContentHasher::ContentHasher() : d(std::make_unique<Private>()) {}

ContentHasher::~ContentHasher() = default;

std::optional<ContentHasher::Fingerprint> ContentHasher::fingerprint(const QByteArray &path, qint64 logicalSize)
{
    qint64 length = 0;
    const Fd file{openRegular(path, length, d->error)};
    if (file.fd < 0)
        return std::nullopt;
    Fingerprint result;
    d->start();
    const ReadResult head = readAt(file.fd, d->sample.get(), sampleSize, 0, length);
    if (head.failed)
        return d->fail();
    d->add(d->sample.get(), head.bytes);
    if (logicalSize >= tailThreshold) {
        const ReadResult tail = readAt(file.fd, d->sample.get(), sampleSize, logicalSize - sampleSize);
        if (tail.failed)
            return d->fail();
        d->add(d->sample.get(), tail.bytes);
    } else if (logicalSize <= sampleSize) {
        // A short file was read whole when the read stopped at its end; one more
        // byte is asked for only when the sample came back full.
        char probe = 0;
        const bool atEnd = head.bytes < sampleSize || readAt(file.fd, &probe, 1, head.bytes).bytes == 0;
        result.whole = atEnd;
        result.bytes = head.bytes;
    }
    result.digest = d->finish();
    return result;
}

std::optional<QByteArray> ContentHasher::fullHash(const QByteArray &path, const CancelToken &token,
                                                  const std::function<void(qint64)> &onBytes, Form form)
{
    qint64 length = 0;
    const Fd file{openRegular(path, length, d->error)};
    if (file.fd < 0)
        return std::nullopt;
#ifdef POSIX_FADV_SEQUENTIAL
    ::posix_fadvise(file.fd, 0, 0, POSIX_FADV_SEQUENTIAL);
#endif
    if (!d->chunk)
        d->chunk.reset(new char[chunkSize]);
    if (form == Form::zeroRuns)
        return d->zeroRuns(file.fd, length, token, onBytes);
    d->start();
    for (;;) {
        if (token.isCancelled())
            return std::nullopt;
        ssize_t n = 0;
        do {
            n = ::read(file.fd, d->chunk.get(), size_t(chunkSize));
        } while (n < 0 && errno == EINTR);
        if (n < 0)
            return d->fail();
        if (n == 0)
            break;
        d->add(d->chunk.get(), n);
        if (onBytes)
            onBytes(n);
    }
    return d->finish();
}

int ContentHasher::error() const { return d->error; }

std::optional<QByteArray> ContentHasher::Private::zeroRuns(int fd, qint64 length, const CancelToken &token,
                                                           const std::function<void(qint64)> &onBytes)
{
    start();
    char header[24] = "sorvel zero runs";
    qToLittleEndian<qint64>(length, header + 16);
    add(header, sizeof header);
    qint64 zeros = 0; // all-zero blocks not yet added
    const auto addZeros = [&] {
        if (zeros == 0)
            return;
        char run[9] = {'Z'};
        qToLittleEndian<qint64>(zeros, run + 1);
        add(run, sizeof run);
        zeros = 0;
    };
    // The data region at or after the offset last looked up; holes read as zeros.
    qint64 dataStart = 0;
    qint64 dataEnd = 0;
    bool seekable = true;
    for (qint64 offset = 0; offset < length;) {
        if (token.isCancelled())
            return std::nullopt;
        if (offset >= dataEnd) {
            dataStart = offset;
            dataEnd = length;
#ifdef SEEK_DATA
            if (seekable) {
                const off_t data = ::lseek(fd, off_t(offset), SEEK_DATA);
                const off_t hole = data < 0 ? -1 : ::lseek(fd, data, SEEK_HOLE);
                if (data < 0 && errno == ENXIO) { // nothing but a hole to the end
                    dataStart = length;
                } else if (hole < 0) { // not known to this file system: read everything
                    seekable = false;
                } else {
                    dataStart = std::min<qint64>(data, length);
                    dataEnd = std::max<qint64>(hole, dataStart + 1);
                }
            }
#else
            seekable = false;
#endif
        }
        // Whole blocks before the data are zeros without reading them.
        const qint64 holeEnd = dataStart - dataStart % zeroBlock;
        if (holeEnd > offset) {
            zeros += (holeEnd - offset) / zeroBlock;
            if (onBytes)
                onBytes(holeEnd - offset);
            offset = holeEnd;
            continue;
        }
        const qint64 want = std::min({(dataEnd + zeroBlock - 1) / zeroBlock * zeroBlock, length, offset + chunkSize});
        const ReadResult got = readAt(fd, chunk.get(), want - offset, offset);
        if (got.failed)
            return fail();
        for (qint64 at = 0; at < got.bytes; at += zeroBlock) {
            const qint64 n = std::min(zeroBlock, got.bytes - at);
            if (allZero(chunk.get() + at, n)) {
                ++zeros;
            } else {
                addZeros();
                add("D", 1);
                add(chunk.get() + at, n);
            }
        }
        if (onBytes && got.bytes > 0)
            onBytes(got.bytes);
        if (got.bytes < want - offset)
            break; // the file got shorter while it was read
        offset = want;
    }
    addZeros();
    return finish();
}
