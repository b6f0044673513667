#include "TrashDrain.h"

#include "FileOperations.h"
#include "core/RealPlace.h"

#include <QSet>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const QByteArray infoSuffix = QByteArrayLiteral(".trashinfo");

// 0 when the item of `place` is a folder that may be entered: not a link
// (ELOOP), not a file (ENOTDIR), not another volume's root (EXDEV).
int checkFolder(const RealPlace &place)
{
    struct stat st {};
    if (const int e = place.statItem(st))
        return e;
    if (S_ISLNK(st.st_mode))
        return ELOOP;
    if (!S_ISDIR(st.st_mode))
        return ENOTDIR;
    return place.isMountPoint() ? EXDEV : 0;
}

class Drain
{
public:
    explicit Drain(FileOperations &operations) : m_operations(operations) {}

    void empty(const QByteArrayList &trashFolders)
    {
        for (const QByteArray &path : trashFolders)
            emptyOne(path);
    }

    TrashDrain::Outcome outcome() const { return m_outcome; }

private:
    void emptyOne(const QByteArray &path)
    {
        const RealPlace trash = RealPlace::open(path);
        const int trashError = trash.isValid() ? checkFolder(trash) : trash.error();
        if (trashError == ENOENT)
            return; // no trash here: nothing to empty
        if (trashError) {
            fail(trashError);
            return;
        }

        // The trashed items. What could not go keeps its info file.
        const RealPlace files = trash.child("files");
        const int filesError = files.isValid() ? checkFolder(files) : files.error();
        if (filesError && filesError != ENOENT) {
            fail(filesError);
            return;
        }
        QSet<QByteArray> inFiles, stayed;
        if (!filesError) {
            for (const QByteArray &name : files.listNames()) {
                inFiles.insert(name);
                if (remove(files.child(name)))
                    ++m_outcome.removed;
                else
                    stayed.insert(name);
            }
        }

        // Their descriptions, and strays with no item. A link in place of
        // info/ is left alone: emptying it would reach what it points to.
        const RealPlace info = trash.child("info");
        const int infoError = info.isValid() ? checkFolder(info) : info.error();
        if (infoError && infoError != ENOENT)
            fail(infoError);
        if (!infoError) {
            for (const QByteArray &name : info.listNames()) {
                const QByteArray item = name.endsWith(infoSuffix) ? name.chopped(infoSuffix.size()) : QByteArray();
                if (!item.isEmpty() && stayed.contains(item))
                    continue;
                const bool stray = item.isEmpty() || !inFiles.contains(item);
                if (remove(info.child(name)) && stray)
                    ++m_outcome.removed;
            }
        }

        // The cache of trashed folders' sizes; it describes what is gone.
        const RealPlace sizes = trash.child("directorysizes");
        struct stat st {};
        if (sizes.isValid() && sizes.statItem(st) == 0)
            remove(sizes);
    }

    // Removes the item of `place`; true when it is gone. A failure is counted.
    bool remove(const RealPlace &place)
    {
        const int error = place.isValid() ? m_operations.removePermanently(place) : place.error();
        if (error == 0 || error == ENOENT)
            return true;
        fail(error);
        return false;
    }

    void fail(int error)
    {
        ++m_outcome.failed;
        if (m_outcome.firstError == 0)
            m_outcome.firstError = error;
    }

    FileOperations &m_operations;
    TrashDrain::Outcome m_outcome;
};

} // namespace

TrashDrain::Outcome TrashDrain::empty(const QByteArrayList &trashFolders, FileOperations &operations)
{
    Drain drain(operations);
    drain.empty(trashFolders);
    return drain.outcome();
}
