// A folder held open by descriptor, reached without following a link at its
// own name, for acting inside it with the *at calls. Owns its descriptor;
// movable, not copyable; one thread at a time.

#pragma once

#include <QByteArray>
#include <QByteArrayView>

class FolderDescriptor
{
public:
    FolderDescriptor() = default;
    ~FolderDescriptor();
    FolderDescriptor(FolderDescriptor &&other) noexcept;
    FolderDescriptor &operator=(FolderDescriptor &&other) noexcept;
    FolderDescriptor(const FolderDescriptor &) = delete;
    FolderDescriptor &operator=(const FolderDescriptor &) = delete;

    // The folder at `path` with the folders above it resolved through any link
    // (RealPlace), the folder itself never followed, opened for reading. For
    // the app's own folders, whose path may pass a linked home.
    static FolderDescriptor resolved(QByteArrayView path);
    // The folder at an absolute `path`, walked from "/" one piece at a time,
    // each opened without following a link: a link anywhere on the way fails
    // (linkOnTheWay()), and so does "..". For a place recorded as resolved.
    // Held for the *at calls only (on Linux an O_PATH descriptor): it needs
    // no read permission and cannot be listed.
    static FolderDescriptor strict(QByteArrayView path);

    bool isValid() const { return m_fd >= 0; }
    int fd() const { return m_fd; }
    // errno of the failed step when not valid.
    int error() const { return m_error; }
    // strict(): what failed was a symbolic link where a folder was expected.
    bool linkOnTheWay() const { return m_link; }

private:
    int m_fd = -1;
    int m_error = 0;
    bool m_link = false;
};
