#pragma once

#include "core/Desktop.h"

#include <QObject>
#include <QPointer>
#include <QVariantMap>
#include <QWindow>

class QQmlEngine;

// The desktop as the running interface offers it: the clipboard of the window
// system, a folder dialog of Qt Quick over the main window, and the file
// manager, asked over the session bus where there is one.
class GuiDesktop : public QObject, public Desktop
{
    Q_OBJECT

public:
    explicit GuiDesktop(QQmlEngine *engine, QObject *parent = nullptr);

    // The window the folder dialog belongs to; may be null.
    void setWindow(QWindow *window) { m_window = window; }

    void chooseFolder(const QString &prompt, const QString &message, const QByteArray &startIn,
                      FolderChosen done) override;
    void chooseFile(const QString &prompt, const QString &message, const QByteArray &startIn,
                    const QStringList &nameFilters, FolderChosen done) override;
    void copyText(const QString &text) override;
    void reveal(const QByteArrayList &paths) override;

private:
    // Opens a dialog of Qt Quick Dialogs made from `qml`, with `properties`
    // set, and answers with its property `chosen` once it closes.
    void openDialog(const QByteArray &qml, const char *chosen, const QVariantMap &properties, FolderChosen done);

    QQmlEngine *m_engine;
    QPointer<QWindow> m_window;
};
