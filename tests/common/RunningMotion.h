#pragma once

#include <QObject>
#include <QStringList>
#include <QVariant>

// What still moves under `root`: every QML timer and animation (a Behavior's
// and a transition's too) whose `running` is true, named by class and
// object name, with the name of the nearest object that has one. Empty when
// the scene costs nothing at rest.
inline QStringList runningMotion(const QObject *root)
{
    QStringList out;
    const auto visit = [&out](const QObject *object, const QString &owner, const auto &self) -> void {
        const QString name = object->objectName().isEmpty() ? owner : object->objectName();
        const bool moves = object->inherits("QQmlTimer") || object->inherits("QQuickAbstractAnimation");
        if (moves && object->property("running").toBool())
            out << QString::fromLatin1(object->metaObject()->className()) + QLatin1String(" in ") + name;
        for (const QObject *child : object->children())
            self(child, name, self);
    };
    if (root)
        visit(root, QString(), visit);
    return out;
}
