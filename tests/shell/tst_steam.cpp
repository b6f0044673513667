#include "MainWindow.h"
#include "RunningMotion.h"
#include "TestMain.h"

#include "AppStateForeign.h"
#include "SpaceModel.h"
#include "SteamClean.h"

#include "core/Prefs.h"
#include "core/ScanResult.h"
#include "removal/CleanQueue.h"
#include "state/AppState.h"
#include "state/RemovalSession.h"
#include "state/SidebarItem.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QSignalSpy>

namespace {

// The demo disk in the window, its Space area showing the home folder, and
// four tiles that may go selected in reading order.
struct SteamWindow {
    SteamWindow()
    {
        Prefs::registerDefaults();
        state.setArguments({"sorvel-cleaner", "-demo"});
        state.setVolumesFunction([] { return QList<VolumeInfo>(); });
        // Long enough for the steamer to visit every tile even while the
        // test grabs frames.
        state.setShowTimeScale(3);
        AppStateForeign::setInstance(&state);
    }
    ~SteamWindow() { AppStateForeign::setInstance(nullptr); }
    SteamWindow(const SteamWindow &) = delete;
    SteamWindow &operator=(const SteamWindow &) = delete;

    bool open()
    {
        if (!main.load())
            return false;
        state.onLaunch();
        state.setSection(SidebarItem::overview);
        space = main.window()->findChild<SpaceModel *>();
        return space && QTest::qWaitFor([this] { return space->rowCount() > 12; });
    }

    // The first `count` tiles that aren't kept by the guard, selected.
    QList<QByteArray> pick(int count)
    {
        QList<QByteArray> ids;
        for (int row = 0; row < space->rowCount() && ids.size() < count; ++row) {
            const QModelIndex index = space->index(row);
            if (space->data(index, SpaceModel::LockedRole).toBool())
                continue;
            space->toggle(row, 1, false);
            ids << space->data(index, SpaceModel::TileIdRole).toString().toUtf8();
        }
        return ids;
    }

    bool software() const
    {
        return main.window()->rendererInterface()->graphicsApi() == QSGRendererInterface::Software;
    }
    QString shotName(const QString &name, const QByteArray &appearance) const
    {
        return QStringLiteral("%1%2-%3.png")
            .arg(name, software() ? QStringLiteral("-fallback") : QString(), QLatin1String(appearance));
    }

    AppState state;
    MainWindow main;
    SpaceModel *space = nullptr;
};

QSet<QByteArray> queueIds(const CleanQueue &queue)
{
    QSet<QByteArray> ids;
    for (const CleanItem &item : queue.items())
        ids.insert(item.id);
    return ids;
}

} // namespace

// A removal seen to happen: the steamer visits each tile a removal takes in
// reading order, each tile evaporates as it is visited, the rest close up,
// the steamer goes home, and then nothing in the window runs any more. With
// reduced motion the tiles only fade and the steamer stays home. With
// SORVEL_SCREENSHOT_DIR set the steamer at work is saved (named "-fallback" under the software renderer).
class SteamTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void steamerVisitsWhatGoes_data() { addAppearanceRows(); }

    void steamerVisitsWhatGoes()
    {
        QFETCH(QByteArray, appearance);
        ScopedEnv look("SORVEL_APPEARANCE", appearance);
        ScopedEnv motion("SORVEL_REDUCE_MOTION", "0");
        SteamWindow w;
        QVERIFY(w.open());
        SteamClean *steamer = w.space->steamer();
        const QPointF home = steamer->position();
        QVERIFY(!home.isNull());
        const QList<QByteArray> picked = w.pick(4);
        QCOMPARE(picked.size(), 4);

        QList<QByteArray> visits;
        connect(steamer, &SteamClean::steamedChanged, this, [&] {
            for (const QByteArray &id : picked)
                if (steamer->steamed().contains(id) && !visits.contains(id))
                    visits << id;
        });
        bool jetted = false;
        connect(steamer, &SteamClean::jetChanged, this, [&] { jetted = jetted || steamer->jetting(); });

        w.state.removal()->sorvelise(queueIds(*w.state.queue()), false);
        QVERIFY(steamer->cleaning());
        QVERIFY(steamer->position() != home);
        // The first tile: the jet on it, then eight frames of its evaporation.
        QTRY_VERIFY(visits.size() == 1);
        QVERIFY(w.main.shoot(w.shotName(QStringLiteral("steam-jetting"), appearance)));
        QTRY_VERIFY_WITH_TIMEOUT(!steamer->cleaning(), 8000);
        QCOMPARE(visits, picked);
        QVERIFY(jetted);
        QVERIFY(!steamer->jetting());

        QTRY_VERIFY_WITH_TIMEOUT(!w.state.removal()->isDeleting(), 8000);
        // What went left the grid (a folder kept for its contents stays).
        int gone = 0;
        for (const QByteArray &id : picked) {
            if (w.state.result()->node(id))
                continue;
            ++gone;
            QVERIFY2(w.space->rowOf(id) == -1, id.constData());
        }
        QVERIFY(gone >= 3);
        QVERIFY(steamer->steamed().isEmpty());
        // Home again.
        const auto *layer = w.main.window()->findChild<QQuickItem *>(QStringLiteral("steamLayer"));
        QVERIFY(layer);
        QTRY_COMPARE(steamer->position(), SteamClean::home(layer->size()));
        // At rest again, the window costs nothing: no timer, no animation.
        QTRY_VERIFY2_WITH_TIMEOUT(runningMotion(w.main.window()->contentItem()).isEmpty(),
                                  qPrintable(runningMotion(w.main.window()->contentItem()).join(QLatin1String(", "))),
                                  6000);
        QVERIFY2(w.main.warnings().isEmpty(), qPrintable(w.main.warningText()));
    }

    void reducedMotionOnlyFades()
    {
        ScopedEnv motion("SORVEL_REDUCE_MOTION", "1");
        SteamWindow w;
        QVERIFY(w.open());
        SteamClean *steamer = w.space->steamer();
        QSignalSpy cleaning(steamer, &SteamClean::cleaningChanged);
        const QList<QByteArray> picked = w.pick(3);

        w.state.removal()->sorvelise(queueIds(*w.state.queue()), false);
        // All at once, where they stand.
        for (const QByteArray &id : picked)
            QVERIFY(w.space->data(w.space->index(w.space->rowOf(id)), SpaceModel::VanishingRole).toBool());
        QTRY_VERIFY_WITH_TIMEOUT(!w.state.removal()->isDeleting(), 8000);
        QCOMPARE(cleaning.count(), 0);
        QTRY_VERIFY2(runningMotion(w.main.window()->contentItem()).isEmpty(),
                     qPrintable(runningMotion(w.main.window()->contentItem()).join(QLatin1String(", "))));
        QVERIFY2(w.main.warnings().isEmpty(), qPrintable(w.main.warningText()));
    }
};

SORVEL_TEST(SteamTest);
#include "tst_steam.moc"
