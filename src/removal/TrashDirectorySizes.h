// The directorysizes file of a trash folder: the bytes each trashed folder
// holds, so that whoever shows the trash's size need not walk it. Stateless;
// any thread.

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

// One line per trashed folder, "SIZE MTIME NAME": SIZE the bytes on disk of
// the folder's contents, MTIME the modification time of its info file in
// seconds, NAME its name in files/, percent-encoded as Path= is (so it holds no
// space and no line break).
//
// The file is replaced whole: written to a temporary file in the trash folder
// and renamed over, never left half written. Updates hold an exclusive lock on
// the trash folder, so two of ours never lose each other's line; a line of
// another program is kept while its files/NAME still exists.
class TrashDirectorySizes
{
public:
    struct Line {
        qint64 size = 0;
        qint64 mtime = 0;
        QByteArray name; // exact bytes, as in files/
        friend bool operator==(const Line &, const Line &) = default;
    };

    static QByteArray escape(QByteArrayView name);
    static QByteArray unescape(QByteArrayView escaped);

    // The lines of a file's contents; a line that does not read as one (a
    // missing field, a size that is no number) is left out.
    static QList<Line> parse(QByteArrayView content);
    static QByteArray format(const QList<Line> &lines);

    // The lines of TRASH/directorysizes; empty when there is none.
    static QList<Line> read(const QByteArray &trash);
    // Sets the line of `line.name`, replacing one of that name. 0 or errno.
    static int put(const QByteArray &trash, const Line &line);
    // Drops the line of `name` (0 when there was none). 0 or errno.
    static int drop(const QByteArray &trash, const QByteArray &name);
};
