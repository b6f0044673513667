// Where a path really leads: its parent folder, resolved through every symbolic
// link and held open by descriptor, plus the final name, which is never
// followed. Owns its descriptor; used on one thread at a time.

#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QByteArrayView>

#include <sys/stat.h>

// A trailing slash is dropped, never resolved: "link/" names the link.
//
// Resolution works component by component with descriptors (each step opened
// with O_NOFOLLOW, each link read and spliced in by hand, at most 40 of them),
// so it has no PATH_MAX limit and every step is checked to be the folder that
// was looked at. What acts on the item afterwards goes through parentFd(): the
// folder judged by its resolved text is the folder acted in, however the path
// changes meanwhile.
//
// A relative path is taken from the current folder. Movable, not copyable.
class RealPlace
{
public:
    RealPlace() = default;
    ~RealPlace();
    RealPlace(RealPlace &&other) noexcept;
    RealPlace &operator=(RealPlace &&other) noexcept;
    RealPlace(const RealPlace &) = delete;
    RealPlace &operator=(const RealPlace &) = delete;

    static RealPlace open(QByteArrayView path);

    // The place of `name` inside the item of this place, which must be a folder:
    // opened without following a link (ENOTDIR for a link or a file), and on the
    // mount of this place's own folder, so never the root of another volume or
    // of a bind mount (EXDEV).
    RealPlace child(QByteArrayView name) const;

    bool isValid() const { return m_fd >= 0; }
    // errno of the failed step when not valid.
    int error() const { return m_error; }

    // The resolved folder, canonical text; "/" for a child of the root.
    const QByteArray &parent() const { return m_parent; }
    // The final component as given, empty for "/" itself.
    const QByteArray &name() const { return m_name; }
    // parent() joined with name().
    QByteArray path() const;

    int parentFd() const { return m_fd; }
    const struct stat &parentStat() const { return m_parentStat; }

    // The names inside the item, a folder opened without following a link ("."
    // and ".." left out); empty when it cannot be read.
    QByteArrayList listNames() const;

    // lstat of the item itself, relative to the parent; 0 or errno.
    int statItem(struct stat &st) const;

    // True when the item is a folder on another mount than its parent: the root
    // of a volume (or of a bind mount), which goes nowhere with its folder.
    bool isMountPoint() const;

    // The mount an entry lies on (Linux statx's mount id; a name of "" asks for
    // `dirFd` itself). 0 when the system cannot tell, and then st_dev is all a
    // caller has: that catches other file systems but not bind mounts.
    static quint64 mountOf(int dirFd, const char *name);

private:
    int m_fd = -1;
    int m_error = 0;
    QByteArray m_parent;
    QByteArray m_name;
    struct stat m_parentStat {};
};
