#pragma once

#include "core/RealPlace.h"
#include "removal/FileOperations.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QDir>
#include <QFile>
#include <QMutex>
#include <QTemporaryDir>

#include <functional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace RemovalFixtures {

inline QByteArray bytes(const QTemporaryDir &dir) { return QFile::encodeName(dir.path()); }

inline bool makeDirs(const QByteArray &path) { return QDir().mkpath(QFile::decodeName(path)); }

// A file of `size` bytes of content (allocated as the file system rounds it).
inline bool makeFile(const QByteArray &path, qint64 size = 4)
{
    const int fd = ::open(path.constData(), O_CREAT | O_WRONLY | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0)
        return false;
    const QByteArray chunk(4096, 'x');
    qint64 left = size;
    bool ok = true;
    while (ok && left > 0) {
        const qint64 n = std::min<qint64>(left, chunk.size());
        ok = ::write(fd, chunk.constData(), size_t(n)) == n;
        left -= n;
    }
    ::close(fd);
    return ok;
}

inline bool exists(const QByteArray &path)
{
    struct stat st {};
    return ::lstat(path.constData(), &st) == 0;
}

inline qint64 allocated(const QByteArray &path)
{
    struct stat st {};
    return ::lstat(path.constData(), &st) == 0 ? qint64(st.st_blocks) * 512 : -1;
}

// The real file operations, watched: every call is recorded, and a path for
// which `refuse` gives an errno is refused with it instead of touched.
class RecordingOperations : public FileOperations
{
public:
    std::function<int(const QByteArray &path)> refuse;

    int moveToTrash(const RealPlace &place) override
    {
        note(place.path());
        if (const int error = refused(place.path()))
            return error;
        return m_real->moveToTrash(place);
    }
    int removePermanently(const RealPlace &place) override
    {
        note(place.path());
        if (const int error = refused(place.path()))
            return error;
        return m_real->removePermanently(place);
    }

    QByteArrayList calls() const
    {
        QMutexLocker lock(&m_mutex);
        return m_calls;
    }

private:
    void note(const QByteArray &path)
    {
        QMutexLocker lock(&m_mutex);
        m_calls.append(path);
    }
    int refused(const QByteArray &path) const { return refuse ? refuse(path) : 0; }

    std::shared_ptr<FileOperations> m_real = FileOperations::system();
    mutable QMutex m_mutex;
    QByteArrayList m_calls;
};

} // namespace RemovalFixtures
