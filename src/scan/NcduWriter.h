// Writes a scan's walk, entry by entry as it happens, in ncdu's JSON export
// format (major version 1, minor version 2), so that ncdu and the tools that
// read its files can open it. Holds one folder's description at a time, never
// the tree: memory stays that of the scan itself.

#pragma once

#include "WalkListener.h"

#include "core/CancelToken.h"

#include <QByteArray>
#include <QString>

#include <vector>

#include <sys/types.h>

class QIODevice;

// Every entry is written, small files and links included; names are written
// as their raw bytes (the format allows bytes that are not UTF-8), with quotes,
// backslashes and control characters escaped. Folders and files the scan left
// out are written as excluded; an entry that could not be examined, and a
// folder that could not be listed, carry read_error.
class NcduWriter final : public WalkListener
{
public:
    // `token` is cancelled when a write fails, so the walk stops at once.
    NcduWriter(QIODevice &out, const QString &programVersion, const CancelTokenPtr &token);

    void seen(const TreeWalk::Entry &entry, bool leftOut) override;
    // Closes what is still open and writes out the rest. False when a write
    // failed; see errorText().
    bool finish();
    QString errorText() const { return m_error; }

private:
    void writeOpenFolder(bool unreadable);
    void flushIfFull();
    bool flush();

    QIODevice &m_out;
    CancelTokenPtr m_token;
    QByteArray m_buffer;
    std::vector<dev_t> m_devices; // of each open folder
    // A folder's description waits for the next event: if that says it could
    // not be listed, read_error goes into it.
    QByteArray m_openFolder;
    bool m_folderWaiting = false;
    int m_waitingLevel = 0;
    bool m_finished = false;
    QString m_error;
};
