#pragma once

#include <QByteArray>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <vector>

// A chain of `depth` folders named `name` below `base`, built and removed
// descriptor by descriptor, so its paths may be far beyond PATH_MAX.
class DeepChain
{
public:
    DeepChain(const QByteArray &base, int depth, const QByteArray &name) : m_name(name)
    {
        m_fds.push_back(::open(base.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        m_path = base;
        for (int i = 0; i < depth && m_fds.back() >= 0; ++i) {
            ::mkdirat(m_fds.back(), name.constData(), 0755);
            m_fds.push_back(::openat(m_fds.back(), name.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
            m_path += '/' + name;
        }
        if (m_fds.back() < 0)
            qFatal("cannot build a deep tree");
    }
    ~DeepChain()
    {
        for (const QByteArray &file : m_files)
            ::unlinkat(m_fds.back(), file.constData(), 0);
        for (size_t i = m_fds.size() - 1; i > 0; --i) {
            ::close(m_fds[i]);
            ::unlinkat(m_fds[i - 1], m_name.constData(), AT_REMOVEDIR);
        }
        ::close(m_fds.front());
    }
    DeepChain(const DeepChain &) = delete;
    DeepChain &operator=(const DeepChain &) = delete;

    // The deepest folder.
    QByteArray path() const { return m_path; }
    // Writes a file into the deepest folder and gives its full path.
    QByteArray write(const QByteArray &file, const QByteArray &content)
    {
        const int fd = ::openat(m_fds.back(), file.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
        if (fd < 0 || ::write(fd, content.constData(), size_t(content.size())) != content.size())
            qFatal("cannot write a deep file");
        ::close(fd);
        m_files.push_back(file);
        return m_path + '/' + file;
    }

    // A link in the deepest folder.
    QByteArray symlink(const QByteArray &name, const QByteArray &target)
    {
        if (::symlinkat(target.constData(), m_fds.back(), name.constData()) != 0)
            qFatal("cannot make a deep link");
        m_files.push_back(name);
        return m_path + '/' + name;
    }
    // The path of the folder `level` steps below the base.
    QByteArray level(int level) const
    {
        return m_path.first(m_path.size() - (m_fds.size() - 1 - level) * (m_name.size() + 1));
    }
    int fd(int level) const { return m_fds[size_t(level)]; }

private:
    QByteArray m_name;
    QByteArray m_path;
    std::vector<int> m_fds;
    std::vector<QByteArray> m_files;
};
