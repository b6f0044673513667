#include "TrayIcon.h"

#include "core/Prefs.h"
#include "core/PrefsNotifier.h"
#include "look/Symbols.h"
#include "shell/TrayModel.h"

#include <QApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QMenu>
#include <QPainter>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QScreen>

namespace {

// The droplet mark on the accent's teal, drawn at the sizes trays ask for.
QIcon markIcon()
{
    QIcon icon;
    for (const int side : {16, 22, 24, 32, 48, 64}) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0x2b, 0xb5, 0xb8));
        painter.drawRoundedRect(QRectF(0, 0, side, side), side * 0.28, side * 0.28);
        const int inner = side * 3 / 4;
        const QImage drop = Symbols::render(QStringLiteral("humidity.fill"), Qt::white, QSize(inner, inner));
        painter.drawImage(QPoint((side - inner) / 2, (side - inner) / 2), drop);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace

TrayIcon::TrayIcon(QQmlEngine *engine, QQuickWindow *mainWindow, QObject *parent)
    : QObject(parent), m_engine(engine), m_mainWindow(mainWindow)
{
    m_icon.setIcon(markIcon());
    m_icon.setToolTip(tr("Sorvel Cleaner"));
    connect(&m_icon, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick)
            showPanel();
    });

    // The same rows as a menu, for trays that offer nothing else.
    m_menu = new QMenu();
    auto *rowsModel = new TrayModel(this);
    connect(rowsModel, &TrayModel::windowRequested, this, &TrayIcon::bringBackWindow);
    connect(rowsModel, &TrayModel::quitRequested, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    for (const QVariant &row : TrayModel::rows()) {
        const QVariantMap map = row.toMap();
        const QString action = map.value(QStringLiteral("action")).toString();
        m_menu->addAction(map.value(QStringLiteral("title")).toString(), this,
                          [rowsModel, action] { rowsModel->trigger(action); });
    }
    m_icon.setContextMenu(m_menu);

    connect(PrefsNotifier::instance(), &PrefsNotifier::changed, this, [this](const QString &key) {
        if (key.isEmpty() || key == QLatin1String(Prefs::showMenuBarExtra))
            follow();
    });
    follow();
}

TrayIcon::~TrayIcon()
{
    delete m_panel;
    delete m_menu;
}

bool TrayIcon::isAvailable() { return QSystemTrayIcon::isSystemTrayAvailable(); }

void TrayIcon::follow()
{
    const bool shown = Prefs::boolean(Prefs::showMenuBarExtra) && isAvailable();
    m_icon.setVisible(shown);
    QGuiApplication::setQuitOnLastWindowClosed(!shown);
    if (!shown && m_panel)
        m_panel->hide();
    // With the icon gone, a hidden main window would have no way back.
    if (!shown && m_mainWindow && !m_mainWindow->isVisible())
        bringBackWindow();
}

QQuickWindow *TrayIcon::panel()
{
    if (m_panel)
        return m_panel;
    QQmlComponent component(m_engine, QUrl(QStringLiteral("qrc:/Sorvel/Ui/shell/TrayPanel.qml")));
    QObject *object = component.create();
    m_panel = qobject_cast<QQuickWindow *>(object);
    if (!m_panel) {
        qWarning().noquote() << component.errorString();
        delete object;
        return nullptr;
    }
    if (auto *model = m_panel->property("model").value<TrayModel *>()) {
        connect(model, &TrayModel::windowRequested, this, &TrayIcon::bringBackWindow);
        connect(model, &TrayModel::quitRequested, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    }
    return m_panel;
}

void TrayIcon::showPanel()
{
    QQuickWindow *window = panel();
    if (!window)
        return;
    if (window->isVisible()) {
        window->hide();
        return;
    }
    // Beside the icon where the tray tells its place, else at the pointer; kept
    // on the screen either way.
    const QRect iconArea = m_icon.geometry();
    const QPoint anchor = iconArea.isValid() ? iconArea.bottomLeft() : QCursor::pos();
    QScreen *screen = QGuiApplication::screenAt(anchor);
    const QRect available = screen ? screen->availableGeometry() : QRect(anchor, window->size());
    QPoint at = anchor;
    at.setX(std::clamp(at.x(), available.left(), std::max(available.left(), available.right() - window->width())));
    at.setY(std::clamp(at.y(), available.top(), std::max(available.top(), available.bottom() - window->height())));
    window->setPosition(at);
    window->show();
    window->requestActivate();
}

void TrayIcon::bringBackWindow()
{
    if (!m_mainWindow)
        return;
    if (m_mainWindow->visibility() == QWindow::Minimized)
        m_mainWindow->showNormal();
    else
        m_mainWindow->show();
    m_mainWindow->raise();
    m_mainWindow->requestActivate();
}
