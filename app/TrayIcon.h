// TrayIcon: the application's icon in the desktop's tray (StatusNotifierItem
// over D-Bus on most Linux desktops), with the panel of TrayModel beside it.
// Lives on the GUI thread for the life of the application.
#pragma once

#include <QObject>
#include <QPointer>
#include <QSystemTrayIcon>

class QMenu;
class QQmlEngine;
class QQuickWindow;

// Shown while the preference "showMenuBarExtra" is on and the desktop has a
// tray; follows the preference as it changes. While it shows, closing the main
// window leaves the application running in the tray; otherwise closing the last
// window quits. A click shows the panel; the context menu holds the panel's
// rows for trays that only offer a menu.
class TrayIcon : public QObject
{
    Q_OBJECT

public:
    TrayIcon(QQmlEngine *engine, QQuickWindow *mainWindow, QObject *parent = nullptr);
    ~TrayIcon() override;

    // Whether the desktop shows tray icons at all.
    static bool isAvailable();
    bool isShown() const { return m_icon.isVisible(); }
    // Shows the main window again, restored and in front.
    void bringBackWindow();

private:
    void follow();
    void showPanel();
    QQuickWindow *panel();

    QQmlEngine *m_engine;
    QPointer<QQuickWindow> m_mainWindow;
    QPointer<QQuickWindow> m_panel;
    QSystemTrayIcon m_icon;
    QMenu *m_menu = nullptr;
};
