#pragma once

#include <QString>
#include <QUuid>

// A short message at the bottom of the window: one at a time, a newer one
// replaces the older, and each leaves by itself after a few seconds.
struct Toast {
    QString id; // a fresh UUID for every toast shown
    QString message;
    QString symbol; // a symbol name, "sparkles"
    // A button in the toast ("Undo") while it is shown, and what it does, as a
    // key its owner knows ("undoRemoval"); both empty for none.
    QString actionTitle;
    QString action;

    static Toast make(const QString &message, const QString &symbol, const QString &actionTitle = {},
                      const QString &action = {})
    {
        return {QUuid::createUuid().toString(QUuid::WithoutBraces), message, symbol, actionTitle, action};
    }
    friend bool operator==(const Toast &, const Toast &) = default;
};
