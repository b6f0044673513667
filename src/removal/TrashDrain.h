// Emptying trash folders for good: what the "Empty Trash" button does. No state;
// any thread, blocking.

#pragma once

#include <QByteArrayList>
#include <QtGlobal>

class FileOperations;

// A trash folder holds files/ (the trashed items), info/ (NAME.trashinfo for
// each) and perhaps directorysizes. Everything is reached by descriptor from the
// trash folder down: no link is followed on the way, no other volume entered,
// and each item goes through FileOperations::removePermanently, which holds to
// the same rules inside a trashed folder.
class TrashDrain
{
public:
    struct Outcome {
        qint64 removed = 0; // entries of files/ (and stray entries of info/) that went
        qint64 failed = 0;  // entries that stayed, wholly or in part
        int firstError = 0; // errno of the first failure, 0 when none
    };

    // Empties each trash folder: every entry of its files/ (a file, a link, never
    // followed, or a whole folder, through `operations.removePermanently`), then
    // every entry of info/, then the file directorysizes. The folders files/ and
    // info/ themselves stay, and so does the info of an item that could not go,
    // so the trash stays consistent.
    //
    // A trash folder that is a link, not a folder or another volume's root is
    // skipped as one failure (ELOOP, ENOTDIR, EXDEV), and so is one whose files/
    // is; a link or a file in place of info/ leaves the info files alone (one
    // failure). A trash folder that does not exist (any more) is empty already.
    // Any thread; blocking.
    static Outcome empty(const QByteArrayList &trashFolders, FileOperations &operations);
};
