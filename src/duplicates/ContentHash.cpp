#include "ContentHash.h"

#include <openssl/evp.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const EVP_MD *sha256()
{
#if OPENSSL_VERSION_NUMBER >= 0x30000000L
    // Fetched once: an implicit fetch on every EVP_DigestInit_ex costs a lookup.
    static EVP_MD *const md = EVP_MD_fetch(nullptr, "SHA256", nullptr);
    if (md)
        return md;
#endif
    return EVP_sha256();
}

// Opens a regular file for reading. O_NONBLOCK keeps a path that was swapped
// for a FIFO from hanging the open; anything but a regular file is refused, so
// a device can't be read forever.
int openRegular(const QByteArray &path)
{
    int fd = -1;
    do {
        fd = ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    } while (fd < 0 && errno == EINTR);
    if (fd < 0)
        return -1;
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        return -1;
    }
    return fd;
}

struct Fd {
    int fd;
    ~Fd()
    {
        if (fd >= 0)
            ::close(fd); // a closing error changes nothing that was read
    }
};

struct ReadResult {
    qint64 bytes = 0;
    bool failed = false;
};

// Reads up to `count` bytes at `offset`, stopping early only at the end of the
// file or on an error.
ReadResult readAt(int fd, char *buffer, qint64 count, qint64 offset)
{
    ReadResult r;
    while (r.bytes < count) {
        const ssize_t n = ::pread(fd, buffer + r.bytes, size_t(count - r.bytes), off_t(offset + r.bytes));
        if (n < 0) {
            if (errno == EINTR)
                continue;
            r.failed = true;
            break;
        }
        if (n == 0)
            break;
        r.bytes += n;
    }
    return r;
}

} // namespace

struct ContentHasher::Private {
    EVP_MD_CTX *ctx = EVP_MD_CTX_new();
    std::unique_ptr<char[]> sample{new char[sampleSize]};
    std::unique_ptr<char[]> chunk; // allocated on the first whole-file hash

    ~Private() { EVP_MD_CTX_free(ctx); }

    void start() { EVP_DigestInit_ex(ctx, sha256(), nullptr); }
    void add(const char *data, qint64 length) { EVP_DigestUpdate(ctx, data, size_t(length)); }
    QByteArray finish()
    {
        unsigned char digest[EVP_MAX_MD_SIZE];
        unsigned int length = 0;
        EVP_DigestFinal_ex(ctx, digest, &length);
        return QByteArray(reinterpret_cast<const char *>(digest), int(length)).toHex();
    }
};

ContentHasher::ContentHasher() : d(std::make_unique<Private>()) {}

ContentHasher::~ContentHasher() = default;

std::optional<ContentHasher::Fingerprint> ContentHasher::fingerprint(const QByteArray &path, qint64 logicalSize)
{
    const Fd file{openRegular(path)};
    if (file.fd < 0)
        return std::nullopt;
    Fingerprint result;
    d->start();
    const ReadResult head = readAt(file.fd, d->sample.get(), sampleSize, 0);
    if (!head.failed)
        d->add(d->sample.get(), head.bytes);
    if (logicalSize >= tailThreshold) {
        const ReadResult tail = readAt(file.fd, d->sample.get(), sampleSize, logicalSize - sampleSize);
        if (!tail.failed)
            d->add(d->sample.get(), tail.bytes);
    } else if (!head.failed && logicalSize <= sampleSize) {
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
                                                  const std::function<void(qint64)> &onBytes)
{
    const Fd file{openRegular(path)};
    if (file.fd < 0)
        return std::nullopt;
#ifdef POSIX_FADV_SEQUENTIAL
    ::posix_fadvise(file.fd, 0, 0, POSIX_FADV_SEQUENTIAL);
#endif
    if (!d->chunk)
        d->chunk.reset(new char[chunkSize]);
    d->start();
    for (;;) {
        if (token.isCancelled())
            return std::nullopt;
        ssize_t n = 0;
        do {
            n = ::read(file.fd, d->chunk.get(), size_t(chunkSize));
        } while (n < 0 && errno == EINTR);
        if (n <= 0)
            break;
        d->add(d->chunk.get(), n);
        if (onBytes)
            onBytes(n);
    }
    return d->finish();
}
