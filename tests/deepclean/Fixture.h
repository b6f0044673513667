#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// A throwaway home folder with helpers to lay out files of known sizes.
class FakeHome
{
public:
    FakeHome() : m_dir(QDir::tempPath() + QStringLiteral("/sorvel-home-XXXXXX")) {}
    bool isValid() const { return m_dir.isValid(); }
    QByteArray path() const { return QFile::encodeName(m_dir.path()); }
    QByteArray at(const QByteArray &rel) const { return path() + '/' + rel; }

    QByteArray dir(const QByteArray &rel) const
    {
        const QByteArray p = at(rel);
        QDir().mkpath(QFile::decodeName(p));
        return p;
    }

    // A file of `bytes` real bytes (so it has allocated blocks).
    QByteArray file(const QByteArray &rel, qint64 bytes = 10000) const
    {
        const QByteArray p = at(rel);
        const qsizetype slash = p.lastIndexOf('/');
        QDir().mkpath(QFile::decodeName(p.first(slash)));
        const int fd = ::open(p.constData(), O_CREAT | O_WRONLY | O_TRUNC | O_CLOEXEC, 0644);
        if (fd >= 0) {
            const QByteArray chunk(4096, 'x');
            for (qint64 left = bytes; left > 0; left -= chunk.size())
                [[maybe_unused]] auto n = ::write(fd, chunk.constData(), size_t(qMin<qint64>(left, chunk.size())));
            ::fsync(fd);
            ::close(fd);
        }
        return p;
    }

    static qint64 allocated(const QByteArray &path)
    {
        struct stat st {};
        return ::lstat(path.constData(), &st) == 0 ? qint64(st.st_blocks) * 512 : 0;
    }

private:
    QTemporaryDir m_dir;
};
