#pragma once

#include "QmlErrors.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>

#include <memory>

// A window for one QML scene of the module, from the module's files or from
// text, that keeps every QML warning instead of printing it.
class WatchedView
{
public:
    WatchedView()
    {
        view.engine()->addImportPath(QStringLiteral("qrc:/"));
        view.engine()->setOutputWarningsToStandardError(false);
        QObject::connect(view.engine(), &QQmlEngine::warnings, view.engine(),
                         [this](const QList<QQmlError> &list) { warnings << list; });
    }

    // Shows a file of the module, sized to its root; false (with the errors in
    // `error`) when it doesn't load or doesn't show.
    bool showFile(const QString &url)
    {
        view.setResizeMode(QQuickView::SizeViewToRootObject);
        view.setSource(QUrl(url));
        if (view.status() != QQuickView::Ready) {
            error = describe(view.errors());
            return false;
        }
        view.show();
        return QTest::qWaitForWindowExposed(&view);
    }

    // Shows a scene given as text, sized to its root item.
    bool showText(const QByteArray &qml)
    {
        QQmlComponent component(view.engine());
        component.setData(qml, QUrl(QStringLiteral("qrc:/tst/Scene.qml")));
        m_root.reset(component.create());
        auto *item = qobject_cast<QQuickItem *>(m_root.get());
        if (!item) {
            error = component.errorString();
            return false;
        }
        item->setParentItem(view.contentItem());
        view.resize(int(item->width()), int(item->height()));
        view.show();
        return QTest::qWaitForWindowExposed(&view);
    }

    QObject *root() const { return m_root ? m_root.get() : view.rootObject(); }
    QString warningText() const { return describe(warnings); }

    QQuickView view;
    QList<QQmlError> warnings;
    QString error;

private:
    std::unique_ptr<QObject> m_root;
};
