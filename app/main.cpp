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
    engine.load(QUrl(QStringLiteral("qrc:/Sorvel/Ui/shell/Main.qml")));
    return QGuiApplication::exec();
}
