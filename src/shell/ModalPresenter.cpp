#include "ModalPresenter.h"

ModalPresenter::Sheet ModalPresenter::sheetFor(bool isReviewing, bool hasPendingDeletion, bool hasConfirm,
                                               bool hasDeletionFailures, bool hasErrorMessage)
{
    if (isReviewing)
        return Review;
    if (hasPendingDeletion)
        return Deletion;
    if (hasConfirm)
        return Confirm;
    if (hasDeletionFailures)
        return Failure;
    if (hasErrorMessage)
        return Notice;
    return None;
}

void ModalPresenter::set(bool &field, bool value)
{
    if (field == value)
        return;
    field = value;
    Q_EMIT inputsChanged();
    const Sheet next = sheetFor(m_reviewing, m_pendingDeletion, m_confirm, m_failures, m_error);
    if (next != m_sheet) {
        m_sheet = next;
        Q_EMIT sheetChanged();
    }
}
