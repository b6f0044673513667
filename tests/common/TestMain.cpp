#include "TestMain.h"

#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTranslator>

#ifdef SORVEL_TEST_GUI
#include <QGuiApplication>
using TestApplication = QGuiApplication;
#else
#include <QCoreApplication>
using TestApplication = QCoreApplication;
#endif

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace {

struct Entry {
    const char *name;
    std::function<int(int, char **)> run;
};

std::vector<Entry> &registry()
{
    static std::vector<Entry> entries;
    return entries;
}

QByteArray &homeBytes()
{
    static QByteArray home;
    return home;
}

} // namespace

namespace TestMain {

bool add(const char *name, std::function<int(int, char **)> run)
{
    registry().push_back({name, std::move(run)});
    return true;
}

QByteArray home() { return homeBytes(); }

} // namespace TestMain

int main(int argc, char **argv)
{
    // A private home for the whole run, made before Qt reads any of it.
    QTemporaryDir home(QDir::tempPath() + QStringLiteral("/sorvel-test-home-XXXXXX"));
    if (!home.isValid()) {
        std::fprintf(stderr, "cannot create a temporary home\n");
        return 1;
    }
    const QByteArray homePath = QFile::encodeName(home.path());
    homeBytes() = homePath;
    qputenv("HOME", homePath);
    qputenv("XDG_CONFIG_HOME", homePath + "/.config");
    qputenv("XDG_DATA_HOME", homePath + "/.local/share");
    qputenv("XDG_CACHE_HOME", homePath + "/.cache");
    qputenv("XDG_STATE_HOME", homePath + "/.local/state");
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("TZ", "UTC");
    QStandardPaths::setTestModeEnabled(true);

    TestApplication app(argc, argv);
    TestApplication::setOrganizationName(QStringLiteral("Sorvel Tests"));
    TestApplication::setApplicationName(QStringLiteral("Sorvel Cleaner Tests"));
    // The English plural forms, as the programs install them (core/Translations,
    // which knows this translator by its name): a count reads "1 item". The
    // table is there when the test links the engine.
    auto *plurals = new QTranslator(&app);
    plurals->setObjectName(QStringLiteral("sorvel_en"));
    if (plurals->load(QStringLiteral(":/i18n/sorvel_en.qm")))
        TestApplication::installTranslator(plurals);

    // SORVEL_TEST_CLASSES=TestA,TestB runs only those classes.
    const QByteArrayList only = qgetenv("SORVEL_TEST_CLASSES").split(',');
    int failures = 0;
    for (const Entry &entry : registry())
        if (only == QByteArrayList{QByteArray()} || only.contains(entry.name))
            failures += entry.run(argc, argv) != 0 ? 1 : 0;
    return failures;
}
