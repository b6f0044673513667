#include "MainWindow.h"
#include "TestMain.h"

#include "AppStateForeign.h"
#include "SteamModel.h"

#include "core/Prefs.h"
#include "removal/CleanQueue.h"
#include "state/AppState.h"
#include "state/RemovalSession.h"

#include <QQuickItem>
#include <QSemaphore>
#include <QTemporaryDir>

namespace {

SteamModel *steamOf(QQuickWindow *window)
{
    const QList<SteamModel *> found = window->findChildren<SteamModel *>();
    return found.isEmpty() ? nullptr : found.first();
}

// Tabs until the focus is on an item whose class name starts with `kind`.
QQuickItem *tabTo(QQuickWindow *window, const char *kind)
{
    for (int tab = 0; tab < 40; ++tab) {
        QTest::keyClick(window, Qt::Key_Tab);
        QQuickItem *focus = window->activeFocusItem();
        if (focus && QByteArray(focus->metaObject()->className()).startsWith(kind))
            return focus;
    }
    return nullptr;
}

} // namespace

// The Deep Clean area in the window, in both appearances: its rows from the
// keyboard, a filter that matches nothing, the first measurement and the
// question before the Trash is emptied. With SORVEL_SCREENSHOT_DIR set, saves
// deepclean-<picture>-<appearance>.png.
class SteamViewTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_prefs;

private Q_SLOTS:
    void initTestCase()
    {
        Prefs::registerDefaults();
        Prefs::useFile(m_prefs.filePath(QStringLiteral("prefs.ini")));
    }

    void area_data() { addAppearanceRows(); }

    void area()
    {
        QFETCH(QByteArray, appearance);
        const ShownIn shown(appearance);
        const auto name = [&](const char *picture) {
            return QStringLiteral("deepclean-%1-%2.png").arg(QLatin1String(picture), QLatin1String(appearance));
        };

        {
            // The first measurement has the page to itself while it runs.
            QSemaphore release;
            AppState state;
            state.setArguments({"sorvel-cleaner"});
            Environment environment = Environment::system();
            environment.volumes = [] { return QList<VolumeInfo>(); };
            environment.trashFolders = [&release] {
                release.acquire();
                return QByteArrayList();
            };
            state.setEnvironment(environment);
            state.setSection(SidebarItem::cleanup);
            AppStateForeign::setInstance(&state);
            MainWindow main;
            QVERIFY(main.load());
            QTRY_VERIFY(steamOf(main.window()) && steamOf(main.window())->firstMeasure());
            QVERIFY(main.shoot(name("measuring")));
            release.release();
            QTRY_VERIFY(!steamOf(main.window())->isMeasuring());
            QVERIFY2(main.warnings().isEmpty(), qPrintable(main.warningText()));
            AppStateForeign::setInstance(nullptr);
        }

        AppState state;
        state.setArguments({"sorvel-cleaner", "-demo"});
        state.setShowTimeScale(0);
        AppStateForeign::setInstance(&state);
        state.onLaunch();
        state.setSection(SidebarItem::cleanup);
        MainWindow main;
        QVERIFY(main.load());
        QQuickWindow *window = main.window();
        SteamModel *steam = steamOf(window);
        QVERIFY(steam);
        QTRY_VERIFY(steam->locations().size() >= 4);
        QVERIFY(!steam->artifacts().isEmpty());
        QVERIFY(main.shoot(name("area")));
        // Keys go to the active window; on an X server without a window
        // manager nothing makes it active by itself.
        window->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(window));

        // Tab reaches the first location; Space ticks it, Right unfolds what
        // it holds, Left folds it again.
        QQuickItem *row = tabTo(window, "ItemRow");
        QVERIFY2(row, "Tab never reaches the rows");
        QTest::keyClick(window, Qt::Key_Space);
        QCOMPARE(state.queue()->count(), 1);
        QCOMPARE(state.queue()->items().first().source, CleanItem::Source::deepClean);
        QTest::keyClick(window, Qt::Key_Right);
        QTRY_VERIFY(steam->locations().first().toMap().value(QStringLiteral("expanded")).toBool());
        QVERIFY(main.shoot(name("unfolded")));
        QTest::keyClick(window, Qt::Key_Left);
        QTRY_VERIFY(!steam->locations().first().toMap().value(QStringLiteral("expanded")).toBool());
        QTest::keyClick(window, Qt::Key_Space);
        QCOMPARE(state.queue()->count(), 0);

        // Further on, past every row, the Trash's plate; Space asks first.
        QQuickItem *empty = tabTo(window, "SorvelButton");
        while (empty && empty->property("text").toString() != QStringLiteral("Empty…"))
            empty = tabTo(window, "SorvelButton");
        QVERIFY2(empty, "Tab never reaches Empty Trash");
        QCOMPARE(steam->trashValue(), QStringLiteral("2.3 GB"));
        QTest::keyClick(window, Qt::Key_Space);
        QTRY_VERIFY(state.removal()->confirm());
        QVERIFY(main.shoot(name("empty-trash")));
        // Yes, as the sheet's button says it.
        QObject *sheet = nullptr;
        for (QObject *object : window->findChildren<QObject *>())
            if (QByteArray(object->metaObject()->className()).startsWith("ConfirmModel"))
                sheet = object;
        QVERIFY(sheet);
        QVERIFY(QMetaObject::invokeMethod(sheet, "perform"));
        QVERIFY(!state.removal()->confirm());
        QTRY_VERIFY(state.toast());
        QCOMPARE(state.toast()->message, QStringLiteral("Trash emptied · demo mode, nothing was deleted"));
        QCOMPARE(state.removal()->sessionFreed(), 0);
        state.setToast(std::nullopt);

        steam->setSearch(QStringLiteral("no such grime"));
        QVERIFY(steam->nothingMatches());
        QVERIFY(main.shoot(name("nothing")));

        QVERIFY2(main.warnings().isEmpty(), qPrintable(main.warningText()));
        AppStateForeign::setInstance(nullptr);
    }
};

SORVEL_TEST(SteamViewTest);
#include "tst_steamview.moc"
