// PathActionsModel: copy and reveal of one path, for the small buttons of a
// sheet's row. Owns nothing and acts on AppStateForeign's state; QML makes it
// on the GUI thread.
#pragma once

#include <QObject>
#include <QQmlEngine>
#include <QString>

// Copy and reveal of one path, for the small buttons of a row.
class PathActionsModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT

public:
    using QObject::QObject;
    Q_INVOKABLE void copy(const QString &path);
    Q_INVOKABLE void reveal(const QString &path);
};
