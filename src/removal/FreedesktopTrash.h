// Moving files to the Trash the freedesktop.org way (Trash specification 1.0).
// Holds only where the home trash is; any thread, and two movers at once never
// pick the same name.

#pragma once

#include <QByteArray>

#include <optional>

class RealPlace;

// Items on the home folder's file system go to $XDG_DATA_HOME/Trash (made with
// its parents, mode 0700). Items on another file system go to that volume's
// trash: $topdir/.Trash/$uid when $topdir/.Trash is a real directory with the
// sticky bit set, else $topdir/.Trash-$uid. Nothing is ever copied across
// devices and nothing falls back to deleting: without a usable trash the move
// fails with a reason and the item stays where it is.
//
// Each move first creates info/NAME.trashinfo exclusively (so two movers never
// pick the same name), then renames the item into files/NAME; if the rename
// fails the info file is removed again. Path= is percent-encoded, absolute in
// the home trash and relative to $topdir in a volume trash. A folder moved in
// gets its line in the trash's directorysizes (TrashDirectorySizes), measured
// once it lies in files/.
class FreedesktopTrash
{
public:
    struct Outcome {
        int error = 0;        // 0, or the errno of the step that failed
        QByteArray trashedAs; // files/NAME inside the trash used
        QByteArray infoFile;  // info/NAME.trashinfo
        bool ok() const { return error == 0; }
    };

    // `home` decides the home trash: $XDG_DATA_HOME/Trash for the running
    // user's own home, home/.local/share/Trash for any other.
    explicit FreedesktopTrash(QByteArray home);
    FreedesktopTrash();

    // The item a RealPlace names, never followed. Its volume decides the trash;
    // a mount point, or an item whose move cannot happen for another reason,
    // fails without leaving a folder created for it behind.
    // `folderSize`, when known, is what a folder holds (its directorysizes
    // figure); otherwise it is measured.
    Outcome moveToTrash(const RealPlace &place, std::optional<qint64> folderSize = std::nullopt) const;
    // The same for a path, resolved first.
    Outcome moveToTrash(const QByteArray &path) const;

    QByteArray homeTrash() const { return m_homeTrash; }

    // The Path= value for `path` (exposed for tests).
    static QByteArray encodePath(QByteArrayView path);
    static QByteArray decodePath(QByteArrayView encoded);

private:
    QByteArray m_homeTrash;
};
