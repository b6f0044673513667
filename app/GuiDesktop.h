#pragma once

#include "core/Desktop.h"

#include <QObject>
#include <QPointer>
#include <QWindow>

class QQmlEngine;

// The desktop as the running interface offers it: the clipboard of the window
// system and a folder dialog of Qt Quick over the main window.
class GuiDesktop : public QObject, public Desktop
{
    Q_OBJECT

public:
    explicit GuiDesktop(QQmlEngine *engine, QObject *parent = nullptr);

    // The window the folder dialog belongs to; may be null.
    void setWindow(QWindow *window) { m_window = window; }

    void chooseFolder(const QString &prompt, const QString &message, const QByteArray &startIn,
                      FolderChosen done) override;
    void copyText(const QString &text) override;

private:
    QQmlEngine *m_engine;
    QPointer<QWindow> m_window;
};
