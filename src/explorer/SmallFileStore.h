// The loose small files of the folders the Space explorer has asked for, by
// folder path, and their listing (LooseFiles::list) on the thread pool. Owned
// by SpaceModel; lives on the main thread, where each listing comes back by
// queued call.

#pragma once

#include "ExplorerEntry.h"

#include "core/DirNode.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>

#include <functional>
#include <optional>

class SmallFileStore : public QObject
{
    Q_OBJECT

public:
    // `revision` tells the result's revision now, or nothing without a result;
    // a listing begun under another revision is dropped on arrival.
    explicit SmallFileStore(std::function<std::optional<int>()> revision, QObject *parent = nullptr);

    const QHash<QByteArray, QList<ExplorerEntry>> &all() const { return m_files; }
    // The files held for `node`; none when not listed (yet).
    QList<ExplorerEntry> of(const DirNodePtr &node) const;
    bool holds(const QByteArray &path) const { return m_files.contains(path); }
    bool isLoading(const QByteArray &path) const { return m_loading.contains(path); }
    // Forgets what is held; listings under way still arrive.
    void clear() { m_files.clear(); }

    // Starts listing the files of `node` its scan did not keep, unless they are
    // held or on their way. True when a listing started.
    bool load(const DirNodePtr &node);

signals:
    // The listing of `path` came back, kept or dropped as stale.
    void listed(const QByteArray &path);

private:
    std::function<std::optional<int>()> m_revision;
    QHash<QByteArray, QList<ExplorerEntry>> m_files;
    QSet<QByteArray> m_loading;
};
