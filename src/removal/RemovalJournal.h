// The record of what each removal to the Trash moved, so that it can be put
// back: one file per removal in the app's state folder, written item by item
// as each one moves. Any thread; two objects on one folder never share a file.

#pragma once

#include "TrashedItem.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

class RemovalJournal
{
public:
    // The journal kept in `folder` (made with its parents, mode 0700, when the
    // first entry is written).
    explicit RemovalJournal(QByteArray folder);
    // $XDG_STATE_HOME/sorvel-cleaner/removals of the running user.
    static QByteArray defaultFolder();
    const QByteArray &folder() const { return m_folder; }

    // One removal's entry, written as its items move. Movable, not copyable;
    // used on the worker that moves the items.
    class Writer
    {
    public:
        Writer() = default;
        Writer(Writer &&other) noexcept;
        Writer &operator=(Writer &&other) noexcept;
        ~Writer();
        // Appends one item and hands it to the system at once. The file is
        // created with the first item. False when it could not be written: the
        // removal goes on, that item simply has no undo.
        bool add(const TrashedItem &item);
        // The entry's file; empty until the first item.
        const QByteArray &file() const { return m_file; }

    private:
        friend class RemovalJournal;
        bool open();

        QByteArray m_folder;
        QByteArray m_file;
        QDateTime m_date; // when begin() was called
        int m_fd = -1;
    };
    Writer begin() const;

    struct Entry {
        QByteArray file; // the entry's file in the journal folder
        QDateTime date;  // when the removal began
        QList<TrashedItem> items;
    };
    // Every entry, newest first. A line that cannot be read (cut short by a
    // crash, edited by hand) is skipped; an entry without items is left out.
    QList<Entry> entries() const;
    // The newest entry of which at least one item still lies in its trash.
    std::optional<Entry> lastUndoable() const;
    // Removes the entries of which nothing lies in a trash any more (put
    // back, or the trash emptied since), so the journal stays as small as
    // what it can undo. Returns how many went.
    int prune() const;
    // Whether an item still lies in its trash as it was moved (its device and
    // inode at files/NAME, never followed).
    static bool inTrash(const TrashedItem &item);

    struct Stayed {
        TrashedItem item;
        QString reason; // in words: "Something else is at its old place now", ...
    };
    struct UndoOutcome {
        QList<TrashedItem> restored;
        QList<Stayed> stayed;
    };
    // Puts each item of `entry` that still lies in its trash back at its
    // original place, with a rename that never replaces anything, through
    // folders opened without following links. Removes its info file and its
    // directorysizes line. The entry then keeps only what stayed and can still
    // be put back; without any it is removed.
    UndoOutcome undo(const Entry &entry) const;

private:
    QByteArray m_folder;
};
