#include "MainWindow.h"
#include "TestMain.h"

#include "AppStateForeign.h"
#include "FileShelfModel.h"
#include "TwinShelfModel.h"

#include "core/Prefs.h"
#include "removal/CleanQueue.h"
#include "state/AppState.h"
#include "state/RemovalSession.h"

#include <QQuickItem>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace {

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

    void shelves_data() { addAppearanceRows(); }

    // With SORVEL_SCREENSHOT_DIR set, saves files-<picture>-<appearance>.png.
    void shelves()
    {
        QFETCH(QByteArray, appearance);
        const ShownIn shown(appearance);
        AppState state;
        state.setArguments({"sorvel-cleaner", "-demo"});
        state.setShowTimeScale(0);
        AppStateForeign::setInstance(&state);
        state.onLaunch();
        state.setSection(SidebarItem::largest);

        MainWindow main;
        QVERIFY(main.load());
        QQuickWindow *window = main.window();
        const auto shoot = [&](const char *name) {
            QVERIFY(main.shoot(QStringLiteral("files-%1-%2.png").arg(QLatin1String(name), QLatin1String(appearance))));
        };

        // Biggest: rows, then Tab into the list and Space selects its first row.
        FileShelfModel *biggest = findModel<FileShelfModel>(window);
        QVERIFY(biggest);
        QTRY_VERIFY(biggest->count() > 30);
        shoot("biggest");
        // Keys go to the active window; on an X server without a window
        // manager nothing makes it active by itself.
        window->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(window));
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

        QVERIFY2(main.warnings().isEmpty(), qPrintable(main.warningText()));
        AppStateForeign::setInstance(nullptr);
    }
};

SORVEL_TEST(FilesViewTest);

#include "tst_filesview.moc"
