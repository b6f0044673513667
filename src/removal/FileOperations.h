#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

// The two operations that change the user's files. Everything that removes goes
// through this seam, so tests can watch (or refuse) each call, and so the one
// real implementation keeps the errno of what failed for the failure classes.
class FileOperations
{
public:
    virtual ~FileOperations() = default;

    // 0 when the item went, else the errno of the step that failed.
    virtual int moveToTrash(const QByteArray &path) = 0;
    // Removes a file, a link or a whole folder. Goes on after a failure inside a
    // folder and returns the errno of the first one (0 when all went).
    virtual int removePermanently(const QByteArray &path) = 0;

    // The system's operations: the freedesktop.org Trash on Linux, the
    // platform's own Trash on macOS, and POSIX removal.
    static std::shared_ptr<FileOperations> system();

    // The system's wording of an errno.
    static QString describe(int error);
};
