// The two operations that change the user's files: to the Trash, or removed for
// good. Every removal goes through this seam; each removal worker uses an object
// of its own.

#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

class RealPlace;
struct TrashedItem;

// Tests watch (or refuse) each call through this seam, and the one real
// implementation keeps the errno of what failed for the failure classes.
//
// Both act on a RealPlace: the item's folder is already open, reached without
// following a link, and the item is its entry `name()`, never followed either.
// The system's implementation works only through descriptors from there on:
// every folder it enters is opened with O_NOFOLLOW, checked to be the folder it
// looked at (device and inode) and to lie on the item's own volume; another
// volume mounted inside is left alone and reported (EXDEV). A mount point
// itself is not removed (EBUSY).
class FileOperations
{
public:
    virtual ~FileOperations() = default;

    // 0 when the item went, else the errno of the step that failed. On
    // success `trashed` (when given) learns where it lies now; its original
    // and identity are the caller's to fill. A size above 0 in it on the way
    // in is what the item holds, so that it need not be measured again.
    virtual int moveToTrash(const RealPlace &place, TrashedItem *trashed) = 0;
    // Removes a file, a link or a whole folder. Goes on after a failure inside a
    // folder and returns the errno of the first one (0 when all went).
    virtual int removePermanently(const RealPlace &place) = 0;

    // The system's operations: the freedesktop.org Trash on Linux, the
    // platform's own Trash on macOS, and POSIX removal.
    static std::shared_ptr<FileOperations> system();

    // The system's wording of an errno.
    static QString describe(int error);
};
