#include "FileOperations.h"

#include "FreedesktopTrash.h"

#include <QFile>

#include <cerrno>
#include <cstring>

#include <fts.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

int removeTree(const QByteArray &path)
{
    QByteArray copy = path;
    char *roots[] = {copy.data(), nullptr};
    FTS *fts = ::fts_open(roots, FTS_PHYSICAL | FTS_NOCHDIR, nullptr);
    if (!fts)
        return errno;
    int first = 0;
    auto note = [&first](int e) {
        if (first == 0)
            first = e;
    };
    while (FTSENT *e = ::fts_read(fts)) {
        switch (e->fts_info) {
        case FTS_D:
            break;
        case FTS_DP:
            if (::rmdir(e->fts_accpath) != 0)
                note(errno);
            break;
        case FTS_DNR:
        case FTS_ERR:
        case FTS_NS:
            note(e->fts_errno);
            break;
        case FTS_DC:
            break;
        default: // files, links, dangling links, specials
            if (::unlink(e->fts_accpath) != 0)
                note(errno);
            break;
        }
    }
    if (errno != 0 && first == 0)
        note(errno);
    ::fts_close(fts);
    return first;
}

class SystemFileOperations final : public FileOperations
{
public:
    int moveToTrash(const QByteArray &path) override
    {
#if defined(Q_OS_MACOS)
        QFile file(QFile::decodeName(path));
        if (file.moveToTrash())
            return 0;
        return ::access(path.constData(), F_OK) == 0 ? EPERM : ENOENT;
#else
        return m_trash.moveToTrash(path).error;
#endif
    }

    int removePermanently(const QByteArray &path) override
    {
        struct stat st {};
        if (::lstat(path.constData(), &st) != 0)
            return errno;
        if (!S_ISDIR(st.st_mode))
            return ::unlink(path.constData()) == 0 ? 0 : errno;
        errno = 0;
        return removeTree(path);
    }

private:
    FreedesktopTrash m_trash;
};

} // namespace

std::shared_ptr<FileOperations> FileOperations::system() { return std::make_shared<SystemFileOperations>(); }

QString FileOperations::describe(int error)
{
    char buffer[256] = {};
    // The GNU strerror_r returns the text, which may not be in the buffer.
#if defined(__GLIBC__) && defined(_GNU_SOURCE)
    const char *text = ::strerror_r(error, buffer, sizeof buffer);
#else
    const char *text = ::strerror_r(error, buffer, sizeof buffer) == 0 ? buffer : "Unknown error";
#endif
    return QString::fromLocal8Bit(text);
}
