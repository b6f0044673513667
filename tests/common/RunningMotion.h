#pragma once

#include <QObject>
#include <QQuickItem>
#include <QStringList>
#include <QVariant>

#include <functional>

// Every object below `object`: its QObject children and its visual children
// (items a Repeater or a view made have no QObject parent).
inline void walkObjects(QObject *object, const std::function<void(QObject *)> &visit)
{
    visit(object);
    QList<QObject *> below = object->children();
    if (auto *item = qobject_cast<QQuickItem *>(object))
        for (QQuickItem *child : item->childItems())
            if (!below.contains(child))
                below << child;
    for (QObject *child : below)
        walkObjects(child, visit);
}

// What still moves under `root`: every QML timer and animation (a Behavior's
// and a transition's too) whose `running` is true, named by class and the
// nearest object name. Empty when the scene costs nothing at rest.
inline QStringList runningMotion(QObject *root)
{
    QStringList out;
    if (!root)
        return out;
    walkObjects(root, [&out](QObject *object) {
        if ((object->inherits("QQmlTimer") || object->inherits("QQuickAbstractAnimation")) &&
            object->property("running").toBool()) {
            QString owner;
            for (QObject *at = object; at && owner.isEmpty(); at = at->parent())
                owner = at->objectName();
            out << QString::fromLatin1(object->metaObject()->className()) + QLatin1String(" in ") + owner;
        }
    });
    return out;
}
