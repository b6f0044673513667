// The state of the duplicate search: the run in progress with its progress and
// status, the groups of the last finished run (as edited since by removals) and
// the copies the user has marked. Lives on the main thread; each run's search
// goes to a worker with a copy of the files.

#pragma once

#include "DuplicateEngine.h"
#include "DuplicateGroup.h"

#include "core/CancelToken.h"
#include "core/FileItem.h"

#include <QByteArray>
#include <QObject>
#include <QSet>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

// Each run gets a fresh token, which is also its identity: reports and results
// of a cancelled or replaced run are dropped when they arrive.
class DuplicatesModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY isRunningChanged)
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(QString status READ status NOTIFY statusChanged)
    Q_PROPERTY(bool hasRun READ hasRun NOTIFY hasRunChanged)
    Q_PROPERTY(int groupCount READ groupCount NOTIFY groupsChanged)
    Q_PROPERTY(qint64 reclaimable READ reclaimable NOTIFY groupsChanged)
    Q_PROPERTY(qint64 unreadableCount READ unreadableCount NOTIFY unreadableCountChanged)

public:
    // What a run does on its worker: DuplicateEngine::find unless replaced.
    using Search = std::function<std::optional<std::vector<DuplicateGroup>>(
        const std::vector<FileItem> &files, const CancelTokenPtr &token,
        const DuplicateEngine::ProgressCallback &progress, DuplicateEngine::Unreadable *unreadable)>;

    explicit DuplicatesModel(QObject *parent = nullptr);
    ~DuplicatesModel() override;

    const std::vector<DuplicateGroup> &groups() const { return m_groups; }
    int groupCount() const { return int(m_groups.size()); }
    bool isRunning() const { return m_running; }
    double progress() const { return m_progress; }
    QString status() const { return m_status; }
    bool hasRun() const { return m_hasRun; }
    // Files the last finished run had to compare but could not read.
    qint64 unreadableCount() const { return m_unreadableCount; }
    // FileItem ids of marked copies; always files of the current groups.
    const QSet<qint64> &marked() const { return m_marked; }
    // The token of the run in progress, null when idle.
    CancelTokenPtr token() const { return m_token; }

    // Sum of the groups' savings, held at the limit of qint64.
    qint64 reclaimable() const;

    // The files a search looks at, in their order: at least `minSize` allocated
    // bytes, some content, and no package. Files inside `leftOut` (the Trash,
    // say) are not looked at, nor, with `leaveOutGitInsides`, the object store
    // and other insides of Git repositories: copies kept there on purpose.
    static std::vector<FileItem> candidates(const std::vector<FileItem> &files, qint64 minSize,
                                            const QByteArrayList &leftOut = {}, bool leaveOutGitInsides = false);

    // Starts a search among the files of at least `minSize` allocated bytes that
    // have content and are no package, cancelling any run in progress. The old
    // groups stay on show until the new ones arrive.
    void run(const std::vector<FileItem> &files, qint64 minSize);
    // Ends the run in progress, if any; the last groups, progress and status stay.
    Q_INVOKABLE void cancel();
    // Forgets everything, the run in progress included.
    Q_INVOKABLE void reset();
    // Takes out files that are gone, by path (under canonical equivalence). A
    // group left with one file goes; marks follow the files that remain.
    void remove(const QSet<QByteArray> &paths);
    // Marks copies; ids of files in no group are ignored.
    void setMarked(const QSet<qint64> &ids);
    // Runs from now on search with `search`; empty goes back to the engine.
    void setSearch(Search search) { m_search = std::move(search); }

signals:
    void isRunningChanged();
    void progressChanged();
    void statusChanged();
    void hasRunChanged();
    void groupsChanged();
    void unreadableCountChanged();

private:
    void setRunning(bool running);
    void setProgress(double progress);
    void setStatus(const QString &status);
    void setHasRun(bool hasRun);
    void setUnreadableCount(qint64 count);
    void finish(const CancelTokenPtr &token, std::vector<DuplicateGroup> groups, qint64 unreadable);
    void report(const CancelTokenPtr &token, double fraction, const QString &status);
    void pruneMarks();

    std::vector<DuplicateGroup> m_groups;
    bool m_running = false;
    double m_progress = 0;
    QString m_status;
    QSet<qint64> m_marked;
    bool m_hasRun = false;
    qint64 m_unreadableCount = 0;
    CancelTokenPtr m_token;
    Search m_search;
};
