// What an item on disk was when the user looked at it: device, inode, type,
// and for anything but a folder its size and modification time. A value; any
// thread.

#pragma once

#include <QString>
#include <QtGlobal>

#include <sys/stat.h>

struct ItemIdentity {
    // How an item differs from the one seen before, most telling first.
    enum class Change : quint8 { none, otherVolume, replaced, becameLink, typeChanged, grew, shrank, modified };

    quint64 device = 0;
    quint64 inode = 0;
    quint32 type = 0; // st_mode & S_IFMT
    qint64 size = 0;  // st_size; 0 for a folder
    qint64 mtimeSeconds = 0;
    qint64 mtimeNanoseconds = 0;

    static ItemIdentity of(const struct stat &st);

    bool isFolder() const { return type == S_IFDIR; }
    bool isLink() const { return type == S_IFLNK; }

    // What differs in `now`. A folder is the same folder while its device,
    // inode and type are: what happens inside it is not a change of the item.
    Change changeTo(const ItemIdentity &now) const;

    // One line for the failure sheet: "It was modified", "It grew from 4 kB to 9 kB".
    static QString describe(Change change, const ItemIdentity &before, const ItemIdentity &now);

    friend bool operator==(const ItemIdentity &, const ItemIdentity &) = default;
};
