#include "ConfirmModel.h"

#include "shell/AppStateForeign.h"

#include "state/AppState.h"

ConfirmModel::ConfirmModel(QObject *parent) : QObject(parent) { setState(AppStateForeign::instance()); }

void ConfirmModel::setState(AppState *state)
{
    m_state = state;
    m_request = state ? state->removal()->confirm() : std::nullopt;
}

void ConfirmModel::cancel()
{
    if (m_state)
        m_state->removal()->setConfirm(std::nullopt);
}

void ConfirmModel::perform()
{
    if (!m_state || !m_request)
        return;
    const ConfirmRequest request = *m_request;
    m_request.reset();
    m_state->removal()->setConfirm(std::nullopt);
    if (request.perform)
        request.perform();
}
