#pragma once

// The road of a removal, from the review to what stayed behind: the review
// and confirm flags, the request expanded from the selection, the guard's
// first pass, the removal worker, the minimum show time, and the outcome
// (freed bytes, toast, failures). Lives on the main thread inside AppState;
// the removal itself runs on a worker of its own with value copies.

#include "core/Paths.h"
#include "removal/CleanItem.h"
#include "removal/ConfirmRequest.h"
#include "removal/DeletionFailure.h"
#include "removal/DeletionRequest.h"
#include "removal/Removal.h"
#include "removal/RemovalJournal.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QThreadPool>
#include <QVariantList>

#include <optional>

class AppState;

class RemovalSession : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isReviewing READ isReviewing WRITE setReviewing NOTIFY isReviewingChanged)
    Q_PROPERTY(bool isDeleting READ isDeleting NOTIFY isDeletingChanged)
    // Lossless text form of the paths of the removal under way.
    Q_PROPERTY(QStringList vanishingPaths READ vanishingPathsText NOTIFY vanishingPathsChanged)
    // Selection ids of the removal under way, in their text form.
    Q_PROPERTY(QStringList sorvelisingIDs READ sorvelisingIDsText NOTIFY sorvelisingIDsChanged)
    // Bytes that really came free since launch: removals for good, as the
    // volumes measured them, and the Trash emptied.
    Q_PROPERTY(qint64 sessionFreed READ sessionFreed NOTIFY sessionFreedChanged)
    // Bytes moved to the Trash since launch and not emptied since.
    Q_PROPERTY(qint64 sessionTrashed READ sessionTrashed NOTIFY sessionTrashedChanged)
    Q_PROPERTY(bool hasDeletionFailures READ hasDeletionFailures NOTIFY deletionFailuresChanged)
    // The journal holds a removal whose items still lie in the Trash.
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY canUndoChanged)
    Q_PROPERTY(bool isUndoing READ isUndoing NOTIFY isUndoingChanged)
    // Each failure as {path (text form), reason (raw value), title, explanation, detail}.
    Q_PROPERTY(QVariantList deletionFailures READ deletionFailuresValue NOTIFY deletionFailuresChanged)

public:
    // `state` owns the session and outlives it.
    explicit RemovalSession(AppState &state);
    // Waits for a removal worker that is still running.
    ~RemovalSession() override;

    // Scales the minimum time a removal stays on screen (1 unless set).
    void setShowTimeScale(double scale) { m_showTimeScale = scale; }

    // -- Observed fields -------------------------------------------------------
    bool isReviewing() const { return m_isReviewing; }
    void setReviewing(bool on);
    bool isDeleting() const { return m_isDeleting; }
    const std::optional<DeletionRequest> &pendingDeletion() const { return m_pendingDeletion; }
    void setPendingDeletion(const std::optional<DeletionRequest> &request);
    const std::optional<ConfirmRequest> &confirm() const { return m_confirm; }
    void setConfirm(const std::optional<ConfirmRequest> &request);
    const QSet<QByteArray> &vanishingPaths() const { return m_vanishingPaths; }
    QStringList vanishingPathsText() const;
    const QSet<QByteArray> &sorvelisingIDs() const { return m_sorvelisingIDs; }
    QStringList sorvelisingIDsText() const;
    // Path -> bytes freed by the last removal. Not observed.
    const QHash<QByteArray, qint64> &lastRemoval() const { return m_lastRemoval; }
    qint64 sessionFreed() const { return m_sessionFreed; }
    qint64 sessionTrashed() const { return m_sessionTrashed; }
    // Counts bytes freed outside a removal (emptying the Trash).
    void addFreed(qint64 bytes);
    // The Trash was emptied: what this session moved there is gone with it.
    void trashEmptied();
    // What stayed behind after the last removal; absent when nothing did.
    const std::optional<QList<DeletionFailure>> &deletionFailures() const { return m_deletionFailures; }
    bool hasDeletionFailures() const { return m_deletionFailures.has_value(); }
    QVariantList deletionFailuresValue() const;
    void setDeletionFailures(const std::optional<QList<DeletionFailure>> &failures);
    Q_INVOKABLE void clearDeletionFailures() { setDeletionFailures(std::nullopt); }

    bool canUndo() const { return m_canUndo; }
    bool isUndoing() const { return m_isUndoing; }

    // The toast action that undoes the last removal.
    static inline const QString undoAction = QStringLiteral("undoRemoval");

    // -- Operations ------------------------------------------------------------
    // Puts back the newest removal of the journal whose items still lie in the
    // Trash, on a worker: each item returns to its place unless something else
    // took it, then the figures of what came back are measured anew. Says what
    // came back in a toast, and what stayed (and why) in a notice.
    Q_INVOKABLE void undoLastRemoval();
    // Looks again whether there is something to undo (at launch, and after
    // anything that may have changed it).
    void refreshCanUndo();
    // Opens the review, unless the selection is empty or a removal runs.
    Q_INVOKABLE void sorvelise();
    // Removes the selected items with these ids (the ticked rows of the review):
    // expands them into paths and hands them to performDeletion.
    void sorvelise(const QSet<QByteArray> &ids, bool permanently);
    Q_INVOKABLE void sorveliseText(const QStringList &ids, bool permanently);
    // What sorvelise(ids, ...) would hand to performDeletion: absent when no
    // queued item has one of the ids; without items when they expand to nothing.
    std::optional<DeletionRequest> deletionRequest(const QSet<QByteArray> &ids);
    // Runs one removal: the guard's last word, the environment's removal on a
    // worker, at least the minimum show time, then the models, the toast, the
    // failures, the request's onComplete and a volume refresh. Returns at once.
    void performDeletion(const DeletionRequest &request, bool permanently);

signals:
    void isReviewingChanged();
    void isDeletingChanged();
    void pendingDeletionChanged();
    void confirmChanged();
    void vanishingPathsChanged();
    void sorvelisingIDsChanged();
    void sessionFreedChanged();
    void sessionTrashedChanged();
    void deletionFailuresChanged();
    void canUndoChanged();
    void isUndoingChanged();
    // An undo has landed: the items came back and the model holds them.
    void undoApplied();
    // After a removal has been applied to the models and the paths of the
    // removal under way have been emptied: the moment the views animate.
    void removalApplied();

private:
    template <typename T>
    bool assign(T &field, const T &value, void (RemovalSession::*changed)())
    {
        if (field == value)
            return false;
        field = value;
        emit(this->*changed)();
        return true;
    }

    // True, with a toast, when a saved scan is shown and `ids` (all queued
    // items when empty) hold anything taken from it.
    bool refusedAsSaved(const QSet<QByteArray> &ids);
    // The closing steps once the worker is back and the show time is over.
    void close(const DeletionRequest &request, bool permanently, const QList<DeletionFailure> &guardFailures,
               const Removal::Outcome &outcome);
    int showTimeMilliseconds(qsizetype count) const;
    void finishUndo(const RemovalJournal::UndoOutcome &outcome, bool found);
    // Notes each item of the selection as it is now, as the review opens.
    void recordReview();
    // The toast after `n` items went, `total` bytes in all.
    static QString removedMessage(qint64 total, qsizetype n, bool permanently);

    AppState &m_state;
    bool m_isReviewing = false;
    bool m_isDeleting = false;
    std::optional<DeletionRequest> m_pendingDeletion;
    std::optional<ConfirmRequest> m_confirm;
    QSet<QByteArray> m_vanishingPaths;
    QSet<QByteArray> m_sorvelisingIDs;
    qint64 m_sessionFreed = 0;
    qint64 m_sessionTrashed = 0;
    std::optional<QList<DeletionFailure>> m_deletionFailures;
    QHash<QByteArray, qint64> m_lastRemoval;
    ReviewedItems m_reviewedAtOpening;
    bool m_canUndo = false;
    bool m_isUndoing = false;
    double m_showTimeScale = 1.0;
    QThreadPool m_workers;
};
