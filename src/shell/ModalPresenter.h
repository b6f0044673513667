// ModalPresenter: which sheet the window shows. Owns the standing requests and
// the sheet chosen from them; owned by Shell, on the GUI thread.
#pragma once

#include <QObject>
#include <QQmlEngine>

// Which sheet the window shows over its backdrop. Several requests may stand at
// once; the first in this order shows, and the others wait their turn:
// the review, a pending deletion, a confirmation, the failures of a removal,
// then a notice (an error message).
class ModalPresenter : public QObject
{
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(bool isReviewing READ isReviewing WRITE setIsReviewing NOTIFY inputsChanged)
    Q_PROPERTY(bool hasPendingDeletion READ hasPendingDeletion WRITE setHasPendingDeletion NOTIFY inputsChanged)
    Q_PROPERTY(bool hasConfirm READ hasConfirm WRITE setHasConfirm NOTIFY inputsChanged)
    Q_PROPERTY(bool hasDeletionFailures READ hasDeletionFailures WRITE setHasDeletionFailures NOTIFY inputsChanged)
    Q_PROPERTY(bool hasErrorMessage READ hasErrorMessage WRITE setHasErrorMessage NOTIFY inputsChanged)
    Q_PROPERTY(Sheet sheet READ sheet NOTIFY sheetChanged)
    Q_PROPERTY(bool isPresented READ isPresented NOTIFY sheetChanged)

public:
    enum Sheet { None, Review, Deletion, Confirm, Failure, Notice };
    Q_ENUM(Sheet)

    using QObject::QObject;

    static Sheet sheetFor(bool isReviewing, bool hasPendingDeletion, bool hasConfirm, bool hasDeletionFailures,
                          bool hasErrorMessage);

    bool isReviewing() const { return m_reviewing; }
    bool hasPendingDeletion() const { return m_pendingDeletion; }
    bool hasConfirm() const { return m_confirm; }
    bool hasDeletionFailures() const { return m_failures; }
    bool hasErrorMessage() const { return m_error; }
    void setIsReviewing(bool value) { set(m_reviewing, value); }
    void setHasPendingDeletion(bool value) { set(m_pendingDeletion, value); }
    void setHasConfirm(bool value) { set(m_confirm, value); }
    void setHasDeletionFailures(bool value) { set(m_failures, value); }
    void setHasErrorMessage(bool value) { set(m_error, value); }

    Sheet sheet() const { return m_sheet; }
    bool isPresented() const { return m_sheet != None; }

    // A click on the backdrop: every request is to be cleared by the owner of
    // the state, which hears of it through dismissRequested().
    Q_INVOKABLE void dismiss() { Q_EMIT dismissRequested(); }

Q_SIGNALS:
    void inputsChanged();
    void sheetChanged();
    void dismissRequested();

private:
    void set(bool &field, bool value);

    bool m_reviewing = false;
    bool m_pendingDeletion = false;
    bool m_confirm = false;
    bool m_failures = false;
    bool m_error = false;
    Sheet m_sheet = None;
};
