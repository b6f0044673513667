#include "QmlErrors.h"
#include "ScopedEnv.h"
#include "TestMain.h"

#include "AppStateForeign.h"
#include "FileShelfModel.h"
#include "TwinShelfModel.h"

#include "core/Prefs.h"
#include "removal/CleanQueue.h"
#include "state/AppState.h"
#include "state/RemovalSession.h"

#include <QDir>
#include <QFile>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace {

// Every warning the process prints while a window is up, QML's or Qt's own
// ("Component is not ready" reaches no QML warning list).
QStringList *g_warnings = nullptr;

void collectWarnings(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (g_warnings && type >= QtWarningMsg && !message.startsWith(QLatin1String("QStandardPaths")))
        g_warnings->append(message);
}

template <typename T>
T *findModel(QQuickWindow *window)
{
    const QList<T *> found = window->findChildren<T *>();
    return found.isEmpty() ? nullptr : found.first();
}

} // namespace

// The Files area in the window, on the demo disk: each shelf, each empty
// state and a search under way, in both appearances, driven from the keyboard.
class FilesViewTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_prefs;

private Q_SLOTS:
    void initTestCase()
    {
        Prefs::registerDefaults();
        Prefs::useFile(m_prefs.filePath(QStringLiteral("prefs.ini")));
    }

    void shelves_data()
    {
        QTest::addColumn<QByteArray>("appearance");
        QTest::newRow("dark") << QByteArray("dark");
        QTest::newRow("light") << QByteArray("light");
    }

    // With SORVEL_SCREENSHOT_DIR set, saves files-<picture>-<appearance>.png.
    void shelves()
    {
        QFETCH(QByteArray, appearance);
        ScopedEnv env("SORVEL_APPEARANCE", appearance);
        ScopedEnv motion("SORVEL_REDUCE_MOTION", "1");
        QStringList warnings;
        g_warnings = &warnings;
        const QtMessageHandler previous = qInstallMessageHandler(collectWarnings);

        AppState state;
        state.setArguments({"sorvel-cleaner", "-demo"});
        state.setShowTimeScale(0);
        AppStateForeign::setInstance(&state);
        state.onLaunch();
        state.setSection(SidebarItem::largest);

        QQmlApplicationEngine engine;
        engine.addImportPath(QStringLiteral("qrc:/"));
        engine.load(QUrl(QStringLiteral("qrc:/Sorvel/Ui/shell/Main.qml")));
        QCOMPARE(engine.rootObjects().size(), 1);
        auto *window = qobject_cast<QQuickWindow *>(engine.rootObjects().first());
        QVERIFY(window);
        QVERIFY(QTest::qWaitForWindowExposed(window));

        const QByteArray dir = qgetenv("SORVEL_SCREENSHOT_DIR");
        const auto shoot = [&](const char *name) {
            QTest::qWait(200);
            const QImage image = window->grabWindow();
            QVERIFY(!image.isNull());
            if (!dir.isEmpty()) {
                QDir().mkpath(QFile::decodeName(dir));
                QVERIFY(image.save(QFile::decodeName(dir) +
                                   QStringLiteral("/files-%1-%2.png")
                                       .arg(QString::fromLatin1(name), QString::fromLatin1(appearance))));
            }
        };

        // Biggest: rows, then Tab into the list and Space selects its first row.
        FileShelfModel *biggest = findModel<FileShelfModel>(window);
        QVERIFY(biggest);
        QTRY_VERIFY(biggest->count() > 30);
        QTRY_VERIFY(window->findChild<QQuickItem *>() != nullptr);
        shoot("biggest");
        QQuickItem *list = nullptr;
        for (int tab = 0; tab < 30 && !list; ++tab) {
            QTest::keyClick(window, Qt::Key_Tab);
            QQuickItem *focus = window->activeFocusItem();
            if (focus && QByteArray(focus->metaObject()->className()).startsWith("ShelfList"))
                list = focus;
        }
        QVERIFY2(list, "Tab never reaches the rows");
        QTest::keyClick(window, Qt::Key_Down);
        QTest::keyClick(window, Qt::Key_Down);
        const int current = list->property("currentIndex").toInt();
        QVERIFY(current >= 1);
        QTest::keyClick(window, Qt::Key_Space);
        QCOMPARE(state.queue()->count(), 1);
        QCOMPARE(state.queue()->items().first().source, CleanItem::Source::files);
        QCOMPARE(state.queue()->items().first().id, biggest->data(biggest->index(current), FileShelfModel::ItemRole)
                                                        .toMap()
                                                        .value(QStringLiteral("id"))
                                                        .toString()
                                                        .toUtf8());
        QTest::keyClick(window, Qt::Key_Space);
        QCOMPARE(state.queue()->count(), 0);

        biggest->setSearch(QStringLiteral("no such file anywhere"));
        QTRY_VERIFY(biggest->isEmpty());
        shoot("biggest-empty");

        state.setSection(SidebarItem::old);
        QTRY_VERIFY(findModel<FileShelfModel>(window) && findModel<FileShelfModel>(window)->shelf() == "old");
        FileShelfModel *forgotten = findModel<FileShelfModel>(window);
        QTRY_VERIFY(forgotten->count() > 5);
        shoot("forgotten");
        forgotten->setSearch(QStringLiteral("no such file anywhere"));
        QTRY_VERIFY(forgotten->isEmpty());
        shoot("forgotten-empty");

        // Twins: never run, running, its list, and empty once the extras are gone.
        state.setSection(SidebarItem::duplicates);
        QTRY_VERIFY(findModel<TwinShelfModel>(window));
        TwinShelfModel *twins = findModel<TwinShelfModel>(window);
        shoot("twins-start");
        twins->find();
        QTRY_VERIFY(state.duplicates()->progress() > 0.3);
        shoot("twins-running");
        QTRY_COMPARE_WITH_TIMEOUT(twins->content(), QStringLiteral("list"), 5000);
        QCOMPARE(state.duplicates()->groupCount(), 3);
        shoot("twins");
        twins->selectAllExtras();
        QCOMPARE(state.queue()->count(), 4);
        shoot("twins-selected");
        QSignalSpy applied(state.removal(), &RemovalSession::removalApplied);
        QSet<QByteArray> ids;
        for (const CleanItem &item : state.queue()->items())
            ids.insert(item.id);
        state.removal()->sorvelise(ids, false);
        QVERIFY(applied.wait(5000));
        QTRY_COMPARE(twins->content(), QStringLiteral("noTwins"));
        state.setToast(std::nullopt);
        shoot("twins-none");

        qInstallMessageHandler(previous);
        g_warnings = nullptr;
        QVERIFY2(warnings.isEmpty(), qPrintable(warnings.join(QLatin1Char('\n'))));
        AppStateForeign::setInstance(nullptr);
    }
};

SORVEL_TEST(FilesViewTest);

#include "tst_filesview.moc"
