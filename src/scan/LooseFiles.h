// The loose files of one folder: the plain files a scan left out of its file
// list, read from disk when the explorer asks for them. No state; runs on the
// calling thread (a worker of the thread pool).

#pragma once

#include <QByteArray>
#include <QList>
#include <QSet>

namespace LooseFiles {

struct File {
    QByteArray path; // `folder` + "/" + name, exact bytes
    qint64 size = 0; // allocated bytes
};

// The entries of `folder` that are no folder and whose names are not in `known`
// (the children the scan kept), in the order the folder lists them; with
// `skipHidden`, none whose name starts with a dot. Symbolic links count as
// themselves. Entries are examined relative to the folder's open descriptor. A
// folder that can't be read gives nothing.
QList<File> list(const QByteArray &folder, const QSet<QByteArray> &known, bool skipHidden);

} // namespace LooseFiles
