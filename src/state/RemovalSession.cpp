#include "RemovalSession.h"

#include "AppState.h"

#include "core/Fmt.h"
#include "deepclean/JunkLocation.h"
#include "removal/Removal.h"
#include "removal/RemovalJournal.h"
#include "safety/SafetyGuard.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <climits>

namespace {

QStringList textList(const QSet<QByteArray> &paths)
{
    QByteArrayList sorted(paths.cbegin(), paths.cend());
    std::sort(sorted.begin(), sorted.end());
    QStringList out;
    out.reserve(sorted.size());
    for (const QByteArray &path : sorted)
        out.append(Paths::toText(path));
    return out;
}

bool isContentsOnlyFolder(const QByteArray &id) { return SafetyGuard::isContentsOnly(Paths::normalize(id)); }

} // namespace

RemovalSession::RemovalSession(AppState &state) : QObject(&state), m_state(state) {}

RemovalSession::~RemovalSession() { m_workers.waitForDone(); }

void RemovalSession::setReviewing(bool on)
{
    if (on && !m_isReviewing)
        recordReview();
    assign(m_isReviewing, on, &RemovalSession::isReviewingChanged);
}

void RemovalSession::recordReview()
{
    m_reviewedAtOpening.clear();
    const Environment &environment = m_state.environment();
    if (!environment.review)
        return;
    QSet<QByteArray> all;
    for (const CleanItem &item : m_state.queue()->items())
        all.insert(item.id);
    if (const std::optional<DeletionRequest> request = deletionRequest(all))
        m_reviewedAtOpening = environment.review(request->items);
}

void RemovalSession::setPendingDeletion(const std::optional<DeletionRequest> &request)
{
    if (m_pendingDeletion.has_value() == request.has_value() && (!request || m_pendingDeletion->id == request->id))
        return;
    m_pendingDeletion = request;
    emit pendingDeletionChanged();
}

void RemovalSession::addFreed(qint64 bytes)
{
    if (bytes > 0)
        assign(m_sessionFreed, m_sessionFreed + bytes, &RemovalSession::sessionFreedChanged);
}

void RemovalSession::trashEmptied() { assign(m_sessionTrashed, qint64(0), &RemovalSession::sessionTrashedChanged); }

void RemovalSession::setConfirm(const std::optional<ConfirmRequest> &request)
{
    if (m_confirm.has_value() == request.has_value() && (!request || m_confirm->id == request->id))
        return;
    m_confirm = request;
    emit confirmChanged();
}

QStringList RemovalSession::vanishingPathsText() const { return textList(m_vanishingPaths); }

QStringList RemovalSession::sorvelisingIDsText() const { return textList(m_sorvelisingIDs); }

void RemovalSession::setDeletionFailures(const std::optional<QList<DeletionFailure>> &failures)
{
    assign(m_deletionFailures, failures, &RemovalSession::deletionFailuresChanged);
}

QVariantList RemovalSession::deletionFailuresValue() const
{
    QVariantList out;
    if (!m_deletionFailures)
        return out;
    for (const DeletionFailure &failure : *m_deletionFailures)
        out.append(QVariantMap{{QStringLiteral("path"), Paths::toText(failure.path)},
                               {QStringLiteral("reason"), failure.reason.rawValue()},
                               {QStringLiteral("title"), failure.reason.title()},
                               {QStringLiteral("explanation"), failure.reason.explanation()},
                               {QStringLiteral("detail"), failure.detail}});
    return out;
}

bool RemovalSession::refusedAsSaved(const QSet<QByteArray> &ids)
{
    // What a saved scan shows may no longer be on this disk, or be something
    // else by now; only Deep Clean's locations, measured here, can go.
    if (!m_state.isSavedScan())
        return false;
    for (const CleanItem &item : m_state.queue()->items())
        if (!item.isJunk() && (ids.isEmpty() || ids.contains(item.id))) {
            m_state.showToast(tr("This is a saved scan: scan the folder again to remove what it shows"),
                              QStringLiteral("lock.fill"));
            return true;
        }
    return false;
}

void RemovalSession::sorvelise()
{
    if (m_state.queue()->isEmpty() || m_isDeleting || refusedAsSaved({}))
        return;
    setReviewing(true);
}

void RemovalSession::sorveliseText(const QStringList &ids, bool permanently)
{
    QSet<QByteArray> set;
    for (const QString &id : ids)
        set.insert(Paths::fromText(id));
    sorvelise(set, permanently);
}

void RemovalSession::sorvelise(const QSet<QByteArray> &ids, bool permanently)
{
    setReviewing(false);
    if (refusedAsSaved(ids))
        return;
    const std::optional<DeletionRequest> request = deletionRequest(ids);
    if (!request)
        return;
    if (request->items.isEmpty()) {
        m_state.showToast(tr("Nothing left to sorvelise"), QStringLiteral("info.circle.fill"));
        return;
    }
    m_reviewedAtOpening.clear();
    performDeletion(*request, permanently);
}

std::optional<DeletionRequest> RemovalSession::deletionRequest(const QSet<QByteArray> &ids)
{
    const Environment &environment = m_state.environment();
    CleanupModel &cleanup = *m_state.cleanup();
    QList<CleanItem> selection;
    for (const CleanItem &item : m_state.queue()->items())
        if (ids.contains(item.id))
            selection.append(item);
    if (selection.isEmpty())
        return std::nullopt;

    // Each item's targets: a location's things, a contents-only folder's
    // entries (Apple's own left alone), or the item itself.
    QList<DeletionItem> items;
    QSet<QByteArray> seen;
    QSet<QByteArray> clearedIDs;
    bool touchesDeepClean = false;
    qint64 estimatedSize = 0;
    for (const CleanItem &item : selection) {
        estimatedSize += item.size;
        QList<DeletionItem> targets;
        if (item.isJunk()) {
            clearedIDs.insert(item.id);
            for (const JunkLocation &location : cleanup.locations()) {
                if (CleanItem::junkPrefix.toByteArray() + location.id.toUtf8() != item.id)
                    continue;
                if (environment.junkTargets)
                    targets = environment.junkTargets(location, item, cleanup);
                break;
            }
        } else if (isContentsOnlyFolder(item.id)) {
            clearedIDs.insert(item.id);
            for (const QByteArray &name : Removal::listNames(item.id))
                if (!name.startsWith("com.apple."))
                    targets.append({Paths::join(item.id, name), std::nullopt, true});
        } else {
            targets.append({item.id, item.size, item.source == CleanItem::Source::deepClean});
        }
        if (item.source == CleanItem::Source::deepClean)
            touchesDeepClean = true;
        for (const DeletionItem &target : targets) {
            const QByteArray key = Paths::comparable(target.path);
            if (seen.contains(key))
                continue;
            seen.insert(key);
            items.append(target);
        }
    }
    if (items.isEmpty())
        return DeletionRequest{};
    touchesDeepClean = touchesDeepClean || !clearedIDs.isEmpty();

    DeletionRequest request;
    request.items = items;
    request.estimatedSize = estimatedSize;
    // Each item as the review saw it when it opened; what the review could not
    // have seen (a folder's entries that appeared since) as it is now.
    if (environment.review) {
        QList<DeletionItem> unseen;
        for (const DeletionItem &item : items) {
            const auto looked = m_reviewedAtOpening.constFind(item.path);
            if (looked != m_reviewedAtOpening.cend())
                request.reviewed.insert(item.path, *looked);
            else
                unseen.append(item);
        }
        if (!unseen.isEmpty())
            request.reviewed.insert(environment.review(unseen));
    }
    for (const CleanItem &item : selection)
        request.queueIDs.insert(item.id);
    QPointer<RemovalSession> self(this);
    request.onComplete = [self, selection, clearedIDs, touchesDeepClean](const QByteArrayList &removedPaths) {
        if (!self)
            return;
        // A protected item can never go, so it need not stay selected.
        QSet<QByteArray> cleared = clearedIDs;
        for (const CleanItem &item : selection) {
            if (item.isJunk())
                continue;
            const QByteArray normalized = Paths::normalize(item.id);
            if (SafetyGuard::isProtected(normalized) && !SafetyGuard::isContentsOnly(normalized))
                cleared.insert(item.id);
        }
        AppState &state = self->m_state;
        state.queue()->removeEvaporated(QSet<QByteArray>(removedPaths.cbegin(), removedPaths.cend()), cleared);
        if (touchesDeepClean) {
            state.cleanup()->subtract(self->m_lastRemoval);
            state.cleanup()->measure();
        }
    };
    return request;
}

QString RemovalSession::removedMessage(qint64 total, qsizetype n, bool permanently)
{
    const QString bytes = Fmt::bytes(std::max<qint64>(total, 0));
    const int items = int(std::min<qsizetype>(n, INT_MAX));
    if (permanently)
        return tr("Sorvelised %1 · %Ln items gone for good", nullptr, items).arg(bytes);
    return tr("Sorvelised %1 · %Ln items in the Trash", nullptr, items).arg(bytes);
}

int RemovalSession::showTimeMilliseconds(qsizetype count) const
{
    return int(Removal::minimumShowTime(count) * 1000.0 * m_showTimeScale);
}

void RemovalSession::performDeletion(const DeletionRequest &request, bool permanently)
{
    // The last word of the guard: nothing it keeps reaches a file operation.
    QList<DeletionItem> allowed;
    QList<DeletionFailure> guardFailures;
    for (const DeletionItem &item : request.items) {
        const QByteArray normalized = Paths::normalize(item.path);
        if (SafetyGuard::isProtected(normalized))
            guardFailures.append({item.path, DeletionFailure::Reason::safetyGuard, SafetyGuard::reason(normalized)});
        else
            allowed.append(item);
    }

    // What goes is known before the removal counts as started, so that what
    // answers the start can see it.
    QSet<QByteArray> vanishing;
    for (const DeletionItem &item : allowed)
        vanishing.insert(item.path);
    assign(m_vanishingPaths, vanishing, &RemovalSession::vanishingPathsChanged);
    assign(m_sorvelisingIDs, request.queueIDs, &RemovalSession::sorvelisingIDsChanged);
    assign(m_isDeleting, true, &RemovalSession::isDeletingChanged);

    QElapsedTimer started;
    started.start();
    const int showTime = showTimeMilliseconds(request.queueIDs.size());
    const Environment::RemoveFunction remove = m_state.environment().remove;
    const std::shared_ptr<FileOperations> operations = m_state.environment().fileOperations;
    Removal::Options options;
    options.reviewed = request.reviewed;
    // Each item moved to the Trash is written down as it moves, for the undo.
    const QByteArray journalFolder = m_state.environment().journalFolder;
    if (!permanently && !journalFolder.isEmpty()) {
        auto journal = std::make_shared<RemovalJournal::Writer>(RemovalJournal(journalFolder).begin());
        options.trashed = [journal](const TrashedItem &item) { journal->add(item); };
    }

    auto land = [this, started, showTime, request, permanently, guardFailures](const Removal::Outcome &outcome) {
        m_lastRemoval = outcome.freed;
        auto finish = [this, request, permanently, guardFailures, outcome] {
            close(request, permanently, guardFailures, outcome);
        };
        const qint64 rest = showTime - started.elapsed();
        if (rest > 0)
            QTimer::singleShot(int(rest), this, finish);
        else
            finish();
    };

    m_workers.start(
        [this, allowed, permanently, remove, operations, options, land] {
            const Removal::Outcome outcome =
                remove && operations ? remove(allowed, permanently, options, *operations) : Removal::Outcome();
            QMetaObject::invokeMethod(
                this, [land, outcome] { land(outcome); }, Qt::QueuedConnection);
        },
        QThread::HighPriority);
}

void RemovalSession::close(const DeletionRequest &request, bool permanently,
                           const QList<DeletionFailure> &guardFailures, const Removal::Outcome &outcome)
{
    const QHash<QByteArray, qint64> &freed = outcome.freed;
    const QList<DeletionFailure> &failures = outcome.failures;
    assign(m_isDeleting, false, &RemovalSession::isDeletingChanged);
    const QSet<QByteArray> removed(freed.keyBegin(), freed.keyEnd());
    m_state.applyRemoval(removed, freed);
    assign(m_vanishingPaths, QSet<QByteArray>(), &RemovalSession::vanishingPathsChanged);
    assign(m_sorvelisingIDs, QSet<QByteArray>(), &RemovalSession::sorvelisingIDsChanged);
    emit removalApplied();
    // Folders that went only in part are measured anew, so their figures hold.
    if (!outcome.partlyGone.isEmpty())
        m_state.remeasure(QByteArrayList(outcome.partlyGone.keyBegin(), outcome.partlyGone.keyEnd()));

    qint64 total = 0;
    for (const qint64 bytes : freed)
        total += bytes;
    if (m_state.isDemo()) {
        // Nothing went, so nothing counts as freed.
        m_state.showToast(tr("Sorvelised %1 · demo mode, nothing was deleted")
                              .arg(Fmt::bytes(std::max<qint64>(request.estimatedSize, 0))),
                          QStringLiteral("humidity.fill"));
    } else if (permanently) {
        // What the volumes really got back.
        assign(m_sessionFreed, m_sessionFreed + outcome.spaceFreed, &RemovalSession::sessionFreedChanged);
        if (!removed.isEmpty())
            m_state.showToast(removedMessage(outcome.spaceFreed, removed.size(), true),
                              QStringLiteral("humidity.fill"));
    } else {
        // In the Trash nothing came free yet: those bytes wait there.
        assign(m_sessionTrashed, m_sessionTrashed + total, &RemovalSession::sessionTrashedChanged);
        if (!removed.isEmpty()) {
            const bool undoable = !outcome.trashed.isEmpty() && !m_state.environment().journalFolder.isEmpty();
            m_state.showToast(removedMessage(total, removed.size(), false), QStringLiteral("humidity.fill"),
                              undoable ? tr("Undo") : QString(), undoable ? undoAction : QString());
        }
        refreshCanUndo();
    }
    const QList<DeletionFailure> all = guardFailures + failures;
    if (!all.isEmpty())
        setDeletionFailures(all);
    if (request.onComplete)
        request.onComplete(QByteArrayList(removed.cbegin(), removed.cend()));
    m_state.refreshVolumes();
}

void RemovalSession::refreshCanUndo()
{
    const QByteArray folder = m_state.environment().journalFolder;
    if (folder.isEmpty()) {
        assign(m_canUndo, false, &RemovalSession::canUndoChanged);
        return;
    }
    m_workers.start([this, folder] {
        // Entries of which nothing lies in a trash any more go on the way.
        const RemovalJournal journal(folder);
        journal.prune();
        const bool can = journal.lastUndoable().has_value();
        QMetaObject::invokeMethod(
            this, [this, can] { assign(m_canUndo, can, &RemovalSession::canUndoChanged); }, Qt::QueuedConnection);
    });
}

void RemovalSession::undoLastRemoval()
{
    const QByteArray folder = m_state.environment().journalFolder;
    if (folder.isEmpty() || m_isUndoing || m_isDeleting)
        return;
    assign(m_isUndoing, true, &RemovalSession::isUndoingChanged);
    m_workers.start([this, folder] {
        const RemovalJournal journal(folder);
        const std::optional<RemovalJournal::Entry> entry = journal.lastUndoable();
        const RemovalJournal::UndoOutcome outcome = entry ? journal.undo(*entry) : RemovalJournal::UndoOutcome();
        const bool found = entry.has_value();
        QMetaObject::invokeMethod(
            this, [this, outcome, found] { finishUndo(outcome, found); }, Qt::QueuedConnection);
    });
}

void RemovalSession::finishUndo(const RemovalJournal::UndoOutcome &outcome, bool found)
{
    QByteArrayList back;
    qint64 bytes = 0;
    for (const TrashedItem &item : outcome.restored) {
        back.append(item.named.isEmpty() ? item.original : item.named);
        bytes += item.size;
    }
    assign(m_sessionTrashed, std::max<qint64>(m_sessionTrashed - bytes, 0), &RemovalSession::sessionTrashedChanged);

    const int count = int(std::min<qsizetype>(back.size(), INT_MAX));
    auto landed = [this, outcome, found, count, bytes] {
        assign(m_isUndoing, false, &RemovalSession::isUndoingChanged);
        if (!found)
            m_state.showToast(tr("Nothing to undo"), QStringLiteral("info.circle.fill"));
        else if (count > 0)
            m_state.showToast(tr("Put back %Ln items · %1", nullptr, count).arg(Fmt::bytes(bytes)),
                              QStringLiteral("arrow.uturn.backward"));
        if (!outcome.stayed.isEmpty()) {
            QStringList lines;
            for (const RemovalJournal::Stayed &stayed : outcome.stayed)
                lines.append(tr("%1: %2").arg(Paths::abbreviateHome(stayed.item.original), stayed.reason));
            m_state.setErrorMessage(tr("%Ln items stayed in the Trash.", nullptr,
                                       int(std::min<qsizetype>(outcome.stayed.size(), INT_MAX))) +
                                    QLatin1Char('\n') + lines.join(QLatin1Char('\n')));
        }
        if (count > 0) {
            m_state.cleanup()->measure();
            m_state.refreshVolumes();
        }
        refreshCanUndo();
        emit undoApplied();
    };
    // The figures follow what came back before anything says so.
    m_state.remeasure(back, landed);
}
