#pragma once

#include "core/RealPlace.h"
#include "removal/FileOperations.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QMutex>
#include <QTemporaryDir>

#include <algorithm>
#include <functional>

#include <dirent.h>
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

// Everything below `path`, never following a link: names, kinds, sizes,
// contents and link texts.
inline void digestInto(QCryptographicHash &hash, const QByteArray &path, const QByteArray &name)
{
    struct stat st {};
    if (::lstat(path.constData(), &st) != 0) {
        hash.addData("missing " + name);
        return;
    }
    hash.addData(name + ' ' + QByteArray::number(st.st_mode) + ' ' + QByteArray::number(qint64(st.st_size)));
    if (S_ISLNK(st.st_mode)) {
        char target[4096];
        const ssize_t n = ::readlink(path.constData(), target, sizeof target);
        hash.addData(QByteArrayView(target, std::max<ssize_t>(n, 0)));
    } else if (S_ISREG(st.st_mode)) {
        QFile file(QFile::decodeName(path));
        if (file.open(QIODevice::ReadOnly))
            hash.addData(file.readAll());
    } else if (S_ISDIR(st.st_mode)) {
        QByteArrayList names;
        if (DIR *dir = ::opendir(path.constData())) {
            while (const dirent *entry = ::readdir(dir))
                if (qstrcmp(entry->d_name, ".") != 0 && qstrcmp(entry->d_name, "..") != 0)
                    names.append(entry->d_name);
            ::closedir(dir);
        }
        std::sort(names.begin(), names.end());
        for (const QByteArray &child : names)
            digestInto(hash, path + '/' + child, name + '/' + child);
    }
}

inline QByteArray digest(const QByteArray &path)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    digestInto(hash, path, "");
    return hash.result().toHex();
}

// A canary: a small tree with a file, a subfolder and a link.
inline bool plantCanary(const QByteArray &path)
{
    return makeDirs(path + "/sub") && makeFile(path + "/keep.txt", 100) && makeFile(path + "/sub/deep.bin", 5000) &&
           ::symlink("keep.txt", (path + "/link").constData()) == 0;
}

// The real file operations, watched: every call is recorded, and a path for
// which `refuse` gives an errno is refused with it instead of touched.
class RecordingOperations : public FileOperations
{
public:
    std::function<int(const QByteArray &path)> refuse;

    int moveToTrash(const RealPlace &place, TrashedItem *trashed) override
    {
        note(place.path());
        if (const int error = refused(place.path()))
            return error;
        return m_real->moveToTrash(place, trashed);
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
