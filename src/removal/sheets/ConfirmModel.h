// ConfirmModel: the confirmation sheet, a question before an action. Owns a
// copy of the question taken when the sheet appears; QML makes it on the GUI
// thread.
#pragma once

#include "removal/ConfirmRequest.h"

#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QString>

#include <optional>

class AppState;

// A question before an action.
// Made when its sheet appears, so the sheet's own state starts afresh every
// time. Follows AppStateForeign's state unless given another.
class ConfirmModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString message READ message CONSTANT)
    Q_PROPERTY(QString actionTitle READ actionTitle CONSTANT)
    Q_PROPERTY(bool destructive READ destructive CONSTANT)

public:
    explicit ConfirmModel(QObject *parent = nullptr);
    void setState(AppState *state);

    QString title() const { return m_request ? m_request->title : QString(); }
    QString message() const { return m_request ? m_request->message : QString(); }
    QString actionTitle() const { return m_request ? m_request->actionTitle : QString(); }
    bool destructive() const { return m_request && m_request->destructive; }

    Q_INVOKABLE void cancel();
    // Clears the question, then runs its action.
    Q_INVOKABLE void perform();

private:
    QPointer<AppState> m_state;
    std::optional<ConfirmRequest> m_request;
};
