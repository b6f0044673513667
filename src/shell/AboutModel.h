// AboutModel: what the About window says. The version and the icon set's
// release come from the build; everything else is fixed text. Made by QML on
// the GUI thread; holds no state.
#pragma once

#include <QObject>
#include <QQmlEngine>
#include <QString>
#include <QVariantList>

class AboutModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QString name READ name CONSTANT)
    // "Version 0.1.0".
    Q_PROPERTY(QString versionText READ versionText CONSTANT)
    Q_PROPERTY(QString licenceText READ licenceText CONSTANT)
    // {title, detail} per thing the application is built with, in the order
    // shown.
    Q_PROPERTY(QVariantList credits READ credits CONSTANT)

public:
    using QObject::QObject;

    QString name() const;
    QString versionText() const;
    QString licenceText() const;
    QVariantList credits() const;

    // The version as the build gives it ("0.1.0").
    static QString version();
};
