#pragma once

#include "ScopedEnv.h"

#include <QCursor>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QScreen>
#include <QStringList>
#include <QTest>

// The application's main window, loaded from the QML module as the app loads
// it (AppStateForeign must hold the state first). Every warning printed while it
// lives is kept, QML's and Qt's own alike ("Component is not ready" reaches no
// QML warning list). One at a time.
class MainWindow
{
public:
    MainWindow()
    {
        s_warnings = &m_warnings;
        m_previous = qInstallMessageHandler(&MainWindow::collect);
    }
    ~MainWindow()
    {
        qInstallMessageHandler(m_previous);
        s_warnings = nullptr;
    }
    MainWindow(const MainWindow &) = delete;
    MainWindow &operator=(const MainWindow &) = delete;

    // Loads the window and waits until it is on screen.
    bool load()
    {
        m_engine.addImportPath(QStringLiteral("qrc:/"));
        m_engine.load(QUrl(QStringLiteral("qrc:/Sorvel/Ui/shell/Main.qml")));
        if (m_engine.rootObjects().size() != 1)
            return false;
        m_window = qobject_cast<QQuickWindow *>(m_engine.rootObjects().first());
        // On a real X server the pointer would rest over the window's middle
        // and hover whatever lies there in every picture.
        if (m_window && m_window->screen())
            QCursor::setPos(m_window->screen(), m_window->screen()->geometry().bottomRight());
        return m_window && QTest::qWaitForWindowExposed(m_window);
    }
    QQuickWindow *window() const { return m_window; }
    const QStringList &warnings() const { return m_warnings; }
    QString warningText() const { return m_warnings.join(QLatin1Char('\n')); }

    // Grabs the window after a moment to settle; with SORVEL_SCREENSHOT_DIR set
    // saves it there as `file`. False when the grab or the save failed.
    bool shoot(const QString &file)
    {
        QTest::qWait(200);
        const QImage image = m_window->grabWindow();
        if (image.isNull())
            return false;
        const QString dir = QFile::decodeName(qgetenv("SORVEL_SCREENSHOT_DIR"));
        if (dir.isEmpty())
            return true;
        QDir().mkpath(dir);
        return image.save(dir + QLatin1Char('/') + file);
    }

private:
    static void collect(QtMsgType type, const QMessageLogContext &, const QString &message)
    {
        // The offscreen platform says what it can't do (raise a window): not ours.
        if (s_warnings && type >= QtWarningMsg && !message.startsWith(QLatin1String("QStandardPaths")) &&
            !message.startsWith(QLatin1String("This plugin does not support")))
            s_warnings->append(message);
    }

    static inline QStringList *s_warnings = nullptr;
    QtMessageHandler m_previous = nullptr;
    QStringList m_warnings;
    QQmlApplicationEngine m_engine;
    QQuickWindow *m_window = nullptr;
};

// Window tests run once per appearance: addAppearanceRows() in the data
// function, and a ShownIn for the row's appearance, with motion reduced so the
// pictures do not catch a transition half way.
inline void addAppearanceRows()
{
    QTest::addColumn<QByteArray>("appearance");
    QTest::newRow("dark") << QByteArray("dark");
    QTest::newRow("light") << QByteArray("light");
}

struct ShownIn {
    explicit ShownIn(const QByteArray &appearance)
        : look("SORVEL_APPEARANCE", appearance), motion("SORVEL_REDUCE_MOTION", "1")
    {}
    ScopedEnv look;
    ScopedEnv motion;
};
