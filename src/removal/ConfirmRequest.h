// A question for the confirmation sheet and what answering yes performs. Made
// and answered on the main thread.

#pragma once

#include <QString>
#include <QUuid>

#include <functional>

struct ConfirmRequest {
    QUuid id = QUuid::createUuid();
    QString title;
    QString message;
    QString actionTitle;
    bool destructive = false;
    std::function<void()> perform;
};
