#include "core/Translations.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QUrl>

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    Translations::install();
    QGuiApplication::setOrganizationName(QStringLiteral("Sorvel"));
    QGuiApplication::setApplicationName(QStringLiteral("Sorvel Cleaner"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Sorvel Cleaner"));

    QQmlApplicationEngine engine;
    QObject::connect(
        &engine, &QQmlApplicationEngine::objectCreationFailed, &app, [] { QCoreApplication::exit(1); },
        Qt::QueuedConnection);
    // The static module's qmldir lives at qrc:/Sorvel/Ui; Qt 6.4 does not look
    // in the resource root by itself, so `import Sorvel.Ui` needs this.
    engine.addImportPath(QStringLiteral("qrc:/"));
    engine.load(QUrl(QStringLiteral("qrc:/Sorvel/Ui/shell/Main.qml")));
    return QGuiApplication::exec();
}
