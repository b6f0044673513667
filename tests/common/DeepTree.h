#pragma once

#include <QByteArray>

#include <functional>
#include <vector>

// Trees deeper than any path the system takes whole (PATH_MAX): made and removed
// relative to open descriptors, one level at a time.
namespace DeepTree {

// The name of the folder at `level` (1 for the first below the root): "d" and
// the level, padded with 'x' to `length` bytes.
QByteArray name(int level, int length);

// Makes `depth` nested folders below the existing folder `root`, each holding
// `files` one-byte files "f0", "f1", ...; `atLevel` may add more through the
// folder's descriptor. False when a system call fails.
bool make(const QByteArray &root, int depth, int nameLength, int files,
          const std::function<void(int fd, int level)> &atLevel = {});

// Removes `path` and everything below it, however deep, relative to descriptors.
void remove(const QByteArray &path);

} // namespace DeepTree

// A chain of `depth` folders below `base`, named as DeepTree::make names them,
// with a descriptor of every level kept open. It goes, with all it holds, when
// the chain does.
class DeepChain
{
public:
    DeepChain(const QByteArray &base, int depth, int nameLength);
    ~DeepChain();
    DeepChain(const DeepChain &) = delete;
    DeepChain &operator=(const DeepChain &) = delete;

    // The deepest folder.
    QByteArray path() const { return m_path; }
    // Writes a file into the deepest folder and gives its full path.
    QByteArray write(const QByteArray &file, const QByteArray &content);
    // A link in the deepest folder.
    QByteArray symlink(const QByteArray &name, const QByteArray &target);
    // The path of the folder `level` steps below the base.
    QByteArray level(int level) const { return m_path.first(m_base.size() + level * (m_nameLength + 1)); }
    int fd(int level) const { return m_fds[size_t(level)]; }

private:
    QByteArray m_base;
    int m_nameLength;
    QByteArray m_path;
    std::vector<int> m_fds;
};
