#include "DuplicatesModel.h"

#include "DuplicateEngine.h"

#include "core/Paths.h"
#include "core/Platform.h"
#include "core/Xdg.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>

#include <algorithm>

DuplicatesModel::DuplicatesModel(QObject *parent) : QObject(parent) {}

DuplicatesModel::~DuplicatesModel()
{
    // The worker stops at its next look at the token; what it sends afterwards
    // finds no model and is dropped.
    if (m_token)
        m_token->cancel();
}

qint64 DuplicatesModel::reclaimable() const
{
    qint64 sum = 0;
    for (const DuplicateGroup &group : m_groups)
        sum = saturatingAdd(sum, group.reclaimable());
    return sum;
}

std::vector<FileItem> DuplicatesModel::candidates(const std::vector<FileItem> &files, qint64 minSize,
                                                  const QByteArrayList &leftOut, bool leaveOutGitInsides)
{
    // Picked first, then copied into a list of the right length: a scan can
    // list millions of files, and a growing list would hold them twice at once.
    std::vector<const FileItem *> picked;
    for (const FileItem &file : files) {
        if (file.isPackage || file.size < minSize || file.logicalSize <= 0)
            continue;
        if (leaveOutGitInsides && file.path.contains("/.git/"))
            continue;
        if (std::any_of(leftOut.begin(), leftOut.end(),
                        [&](const QByteArray &folder) { return Paths::isWithin(file.path, folder); }))
            continue;
        picked.push_back(&file);
    }
    std::vector<FileItem> chosen;
    chosen.reserve(picked.size());
    for (const FileItem *file : picked)
        chosen.push_back(*file);
    return chosen;
}

void DuplicatesModel::run(const std::vector<FileItem> &files, qint64 minSize)
{
    cancel();
    // Copies in the Trash and inside Git repositories are kept there on purpose.
    std::vector<FileItem> chosen =
        candidates(files, minSize, {Xdg::dataHome(Platform::homeDirectory()) + "/Trash"}, true);

    const CancelTokenPtr token = makeCancelToken();
    m_token = token;
    setRunning(true);
    setProgress(0);
    setStatus(tr("Comparing sizes…"));
    m_marked.clear();

    // Everything the worker touches is its own copy; the model is reached only
    // through queued calls that run on the main thread and test the token there.
    const QPointer<DuplicatesModel> self(this);
    const Search search =
        m_search ? m_search
                 : [](const std::vector<FileItem> &some, const CancelTokenPtr &t,
                      const DuplicateEngine::ProgressCallback &progress, DuplicateEngine::Unreadable *unreadable) {
                       return DuplicateEngine::find(some, t, progress, DuplicateEngine::Reading::automatic, unreadable);
                   };
    QThreadPool::globalInstance()->start([self, token, search, chosen = std::move(chosen)] {
        const auto progress = [self, token](double fraction, const QString &status) {
            QMetaObject::invokeMethod(
                QCoreApplication::instance(),
                [self, token, fraction, status] {
                    if (self)
                        self->report(token, fraction, status);
                },
                Qt::QueuedConnection);
        };
        DuplicateEngine::Unreadable unreadable;
        auto answer = search(chosen, token, progress, &unreadable);
        if (!answer)
            return;
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, token, groups = std::move(*answer), count = unreadable.count]() mutable {
                if (self)
                    self->finish(token, std::move(groups), count);
            },
            Qt::QueuedConnection);
    });
}

void DuplicatesModel::report(const CancelTokenPtr &token, double fraction, const QString &status)
{
    if (token->isCancelled() || token != m_token)
        return;
    setProgress(fraction);
    setStatus(status);
}

void DuplicatesModel::finish(const CancelTokenPtr &token, std::vector<DuplicateGroup> groups, qint64 unreadable)
{
    if (token->isCancelled() || token != m_token)
        return;
    m_groups = std::move(groups);
    emit groupsChanged();
    setUnreadableCount(unreadable);
    m_token.reset();
    setRunning(false);
    setHasRun(true);
}

void DuplicatesModel::cancel()
{
    if (m_token)
        m_token->cancel();
    m_token.reset();
    setRunning(false);
}

void DuplicatesModel::reset()
{
    cancel();
    if (!m_groups.empty()) {
        m_groups.clear();
        emit groupsChanged();
    }
    m_marked.clear();
    setUnreadableCount(0);
    setHasRun(false);
}

void DuplicatesModel::remove(const QSet<QByteArray> &paths)
{
    QSet<QByteArray> gone;
    gone.reserve(paths.size());
    for (const QByteArray &path : paths)
        gone.insert(Paths::comparable(path));

    bool changed = false;
    std::vector<DuplicateGroup> kept;
    kept.reserve(m_groups.size());
    for (DuplicateGroup &group : m_groups) {
        const auto before = group.files.size();
        std::erase_if(group.files, [&](const FileItem &file) { return gone.contains(Paths::comparable(file.path)); });
        changed = changed || group.files.size() != before;
        if (group.files.size() >= 2)
            kept.push_back(std::move(group));
        else
            changed = true;
    }
    m_groups = std::move(kept);
    pruneMarks();
    if (changed)
        emit groupsChanged();
}

void DuplicatesModel::setMarked(const QSet<qint64> &ids)
{
    m_marked = ids;
    pruneMarks();
}

void DuplicatesModel::pruneMarks()
{
    if (m_marked.isEmpty())
        return;
    QSet<qint64> present;
    for (const DuplicateGroup &group : m_groups) {
        for (const FileItem &file : group.files)
            present.insert(file.id);
    }
    m_marked.intersect(present);
}

void DuplicatesModel::setRunning(bool running)
{
    if (m_running == running)
        return;
    m_running = running;
    emit isRunningChanged();
}

void DuplicatesModel::setProgress(double progress)
{
    if (m_progress == progress)
        return;
    m_progress = progress;
    emit progressChanged();
}

void DuplicatesModel::setStatus(const QString &status)
{
    if (m_status == status)
        return;
    m_status = status;
    emit statusChanged();
}

void DuplicatesModel::setHasRun(bool hasRun)
{
    if (m_hasRun == hasRun)
        return;
    m_hasRun = hasRun;
    emit hasRunChanged();
}

void DuplicatesModel::setUnreadableCount(qint64 count)
{
    if (m_unreadableCount == count)
        return;
    m_unreadableCount = count;
    emit unreadableCountChanged();
}
