// Reads a saved scan in ncdu's JSON export format (major version 1) as the
// events of a walk, in the order and form TreeWalk gives them, so that the
// scanner builds its result from a saved scan by the same rules as from the
// disk. Streams: memory grows with the depth of the tree, not with the file.

#pragma once

#include "JsonTokenizer.h"
#include "TreeWalk.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

#include <unordered_map>
#include <vector>

#include <sys/stat.h>

class QIODevice;

// Folders come as `directory` and `directoryDone` (or `unreadable` for one
// saved with read_error), files as `file`, links and other special files as
// `symlink`, entries saved with read_error as `noStat`; excluded entries give
// no event. Names are checked: a name with a slash, ".", ".." or a zero byte
// is an error, so no path of a saved scan ever leads outside its root.
class NcduReader
{
public:
    using Kind = TreeWalk::Kind;
    using Entry = TreeWalk::Entry;
    // The project files an artefact rule looks for (see DevArtifactRule), by
    // the number of the folder holding them, folders numbered in the order
    // they come: what one reading gathers for the next, since a folder's
    // neighbours may come after it.
    using ProjectFiles = std::unordered_map<qint64, QByteArrayList>;

    // `known`: the project files gathered by an earlier reading of the same
    // document, for probed(); may be null.
    NcduReader(QIODevice &device, const ProjectFiles *known);

    // The next event, or false at the end or on an error (see errorText()).
    bool next(Entry &entry);
    // Right after a `directory` event: nothing of its contents is reported.
    void skip() { m_skipPending = true; }
    // The artefact kind of the folder of the last `directory` event.
    QString probed() const { return m_probed; }
    // Collects the project files met into `out` while reading.
    void gatherInto(ProjectFiles *out) { m_gather = out; }

    // Empty when the document was read to its end and was well formed.
    QString errorText() const { return m_error; }
    // The scanned folder, as saved; empty before the first event.
    QByteArray root() const { return m_root; }
    // When the scan was saved, in seconds since the epoch; 0 when unsaid.
    qint64 timestamp() const { return m_timestamp; }

private:
    struct Info;
    struct Level {
        qsizetype pathLength; // of the folder's path
        struct stat st;
        qint64 number; // in the order folders come
        bool readError;
    };

    bool readHeader();
    bool readInfo(Info &info, bool isRoot);
    void fillStat(const Info &info, mode_t type, dev_t parentDevice);
    bool fail(const QString &what);
    void noteProjectFile(QByteArrayView name);

    JsonTokenizer m_json;
    const ProjectFiles *m_known;
    ProjectFiles *m_gather = nullptr;
    bool m_started = false;
    bool m_done = false;
    bool m_skipPending = false;
    std::size_t m_quietFrom = 0; // levels from this one on report nothing; 0 when none do
    qsizetype m_truncateTo = -1; // the path of the last event is cut back here next
    bool m_popPending = false;   // the last event closed the innermost level
    std::vector<Level> m_levels;
    qint64 m_folders = 0;
    qint64 m_bytes = 0;
    QByteArray m_path;
    QByteArray m_root;
    struct stat m_st {};
    QString m_probed;
    QString m_error;
    qint64 m_timestamp = 0;
};
