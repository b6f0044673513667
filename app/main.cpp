#include "GuiDesktop.h"
#include "LaunchUsage.h"
#include "SingleInstance.h"
#include "TrayIcon.h"

#include "core/Fmt.h"
#include "core/Prefs.h"
#include "core/Translations.h"
#include "demo/Demo.h"
#include "shell/AppStateForeign.h"
#include "shell/SettingsModel.h"
#include "state/AppState.h"

#include <QApplication>
#include <QIcon>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QUrl>

#include <memory>

int main(int argc, char *argv[])
{
    if (const int status = LaunchUsage::handle(argc, argv); status >= 0)
        return status;
    // Widgets only for the tray icon and its menu; the window is Qt Quick.
    QApplication app(argc, argv);
    Translations::install();
    QGuiApplication::setOrganizationName(QStringLiteral("Sorvel"));
    QGuiApplication::setApplicationName(QStringLiteral("Sorvel Cleaner"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Sorvel Cleaner"));
    // The desktop finds the entry, the icon and the window's group by this id.
    QGuiApplication::setDesktopFileName(QStringLiteral(SORVEL_APP_ID));
    QGuiApplication::setWindowIcon(
        QIcon::fromTheme(QStringLiteral(SORVEL_APP_ID), QIcon(QStringLiteral(":/sorvel/app/" SORVEL_APP_ID ".svg"))));

    // The arguments as the exact bytes of argv, after Qt took its own out: a
    // "-scan" path keeps any byte the shell handed over.
    QByteArrayList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QByteArray(argv[i]));

    // One window on the user's state: a later start hands its arguments to the
    // running one and ends. The demo shows made-up data on a state of its own,
    // so it runs beside anything.
    SingleInstance instance;
    if (!Demo::isOn(arguments)) {
        switch (instance.start(arguments)) {
        case SingleInstance::Role::HandedOver:
            return 0;
        case SingleInstance::Role::NoAnswer:
            qCritical().noquote() << QCoreApplication::translate(
                                         "main", "Sorvel Cleaner is already running but did not answer: %1")
                                         .arg(instance.lastError());
            return 1;
        case SingleInstance::Role::Alone:
        case SingleInstance::Role::First:
            break;
        }
    }

    // The defaults first, so that the state's first reading of the preferences
    // sees them.
    Prefs::registerDefaults();
    AppState state;
    state.setArguments(arguments);

    QObject::connect(&state, &AppState::resultChanged, &state, [&state] {
        if (const ScanResultPtr &result = state.result())
            qInfo().noquote() << (state.isDemo() ? "Holding the demo result:" : "Holding the scan of")
                              << state.scanTargetText() << "-" << result->totalFiles << "files,"
                              << Fmt::bytes(result->root ? result->root->size : 0);
    });

    QObject::connect(&state, &AppState::errorMessageChanged, &state, [&state] {
        if (!state.errorMessage().isNull())
            qWarning().noquote() << state.errorMessage();
    });

    QQmlApplicationEngine engine;
    QObject::connect(
        &engine, &QQmlApplicationEngine::objectCreationFailed, &app, [] { QCoreApplication::exit(1); },
        Qt::QueuedConnection);
    // The static module's qmldir lives at qrc:/Sorvel/Ui; Qt 6.4 does not look
    // in the resource root by itself, so `import Sorvel.Ui` needs this.
    engine.addImportPath(QStringLiteral("qrc:/"));
    // QML reaches the state as the singleton AppState.
    AppStateForeign::setInstance(&state);
    engine.load(QUrl(QStringLiteral("qrc:/Sorvel/Ui/shell/Main.qml")));

    GuiDesktop desktop(&engine);
    if (!engine.rootObjects().isEmpty())
        desktop.setWindow(qobject_cast<QQuickWindow *>(engine.rootObjects().first()));
    state.setDesktop(&desktop);

    // The settings say when this desktop shows no tray icons.
    SettingsModel::setTrayAvailable(TrayIcon::isAvailable());
    std::unique_ptr<TrayIcon> tray;
    if (!engine.rootObjects().isEmpty())
        tray = std::make_unique<TrayIcon>(&engine, qobject_cast<QQuickWindow *>(engine.rootObjects().first()));

    // What later starts ask for.
    QObject::connect(&instance, &SingleInstance::activateRequested, &app, [&tray] {
        if (tray)
            tray->bringBackWindow();
    });
    QObject::connect(&instance, &SingleInstance::scanRequested, &state, &AppState::openUrl);
    QObject::connect(&instance, &SingleInstance::sectionRequested, &state,
                     [&state](const QString &raw) { state.setSectionText(raw); });

    state.onLaunch();
    return QApplication::exec();
}
