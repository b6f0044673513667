#include "FlatSteamer.h"
#include "QmlErrors.h"
#include "RunningMotion.h"
#include "ScopedEnv.h"
#include "StageAssets.h"
#include "TestMain.h"
#include "WatchedView.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QLineF>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QSet>
#include <QTemporaryDir>
#include <QTransform>

#include <cmath>
#include <functional>
#include <numbers>

namespace {

QQuickItem *firstOfType(QQuickItem *root, const char *type)
{
    QQuickItem *found = nullptr;
    walkObjects(root, [&](QObject *object) {
        if (!found && qstrncmp(object->metaObject()->className(), type, qstrlen(type)) == 0)
            found = qobject_cast<QQuickItem *>(object);
    });
    return found;
}

// One item of the module made from `qml`, in a window of its own.
struct Stage {
    explicit Stage(const QByteArray &qml)
    {
        scene.showText("import QtQuick\nimport Sorvel.Ui\nItem { width: 240; height: 200\n" + qml + "\n}");
    }
    // The item made, or null when it failed to load.
    QQuickItem *item() const
    {
        auto *root = qobject_cast<QQuickItem *>(scene.root());
        return root ? root->childItems().value(0) : nullptr;
    }
    WatchedView scene;
};

} // namespace

// The steamer's stance and tremble, the artwork the build draws and where it
// is found, and the rule that the steam effects run nothing while idle.
class SteamTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // -24° at rest; while jetting, -24 + 1.2 sin(9t): a quarter period in, the
    // full amplitude. The nozzle drawn in the frame lands on the jet's start
    // once scaled and turned about the centre.
    void stanceAndTremble()
    {
        const double quarter = std::numbers::pi / 2 / 9;
        QCOMPARE(FlatSteamer::angle(0, true), -24.0);
        QVERIFY(qAbs(FlatSteamer::angle(quarter, true) - -22.8) < 1e-9);
        QVERIFY(qAbs(FlatSteamer::angle(3 * quarter, true) - -25.2) < 1e-9);
        QCOMPARE(FlatSteamer::angle(quarter, false), -24.0);

        const QPointF centre(FlatSteamer::width / 2, FlatSteamer::height / 2);
        QTransform onScreen;
        onScreen.rotate(FlatSteamer::stance).scale(FlatSteamer::scale, FlatSteamer::scale);
        const QPointF tip = onScreen.map(FlatSteamer::drawnNozzle() - centre);
        QVERIFY2(QLineF(tip, FlatSteamer::nozzle()).length() < 1e-9,
                 qPrintable(QStringLiteral("%1, %2").arg(tip.x()).arg(tip.y())));
    }

    // The build drew six puffs of each tone and the glow: soft-edged images
    // whose frame is clear and whose middle is steam.
    void generatedArtwork()
    {
        StageAssets assets;
        QList<QUrl> all;
        for (const QString &puff : assets.puffs(true) + assets.puffs(false))
            all << QUrl(puff);
        QCOMPARE(all.size(), 2 * StageAssets::puffCount);
        all << assets.url(QStringLiteral("honey-glow.png"));
        QSet<QByteArray> distinct;
        for (const QUrl &url : all) {
            QCOMPARE(url.scheme(), QStringLiteral("qrc"));
            const QImage image(u':' + url.path());
            QVERIFY2(image.size() == QSize(96, 96), qPrintable(url.toString()));
            QVERIFY(image.hasAlphaChannel());
            for (const QPoint corner : {QPoint(0, 0), QPoint(95, 0), QPoint(0, 95), QPoint(95, 95), QPoint(48, 0)})
                QCOMPARE(qAlpha(image.pixel(corner)), 0);
            QVERIFY2(qAlpha(image.pixel(48, 48)) > 120, qPrintable(url.toString()));
            distinct.insert(QByteArray(reinterpret_cast<const char *>(image.constBits()), int(image.sizeInBytes())));
        }
        QCOMPARE(distinct.size(), all.size());
        QVERIFY(assets.url(QStringLiteral("no-such.png")).isEmpty());
        QVERIFY(assets.url(QString()).isEmpty());
    }

    // A puff missing from the folder is left out, in order, without a word;
    // the list is looked up once and kept.
    void missingPuffsLeftOut()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        QImage puff(8, 8, QImage::Format_ARGB32);
        puff.fill(Qt::white);
        for (const char *name : {"puff-dark-1.png", "puff-dark-2.png", "puff-dark-4.png", "puff-light-7.png"})
            QVERIFY(puff.save(dir.filePath(QString::fromLatin1(name))));
        QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("puff-dark-5.png")));

        StageAssets assets(dir.path());
        QStringList expected;
        for (const char *name : {"puff-dark-1.png", "puff-dark-2.png", "puff-dark-4.png"})
            expected << QUrl::fromLocalFile(dir.filePath(QString::fromLatin1(name))).toString();
        QCOMPARE(assets.puffs(true), expected);
        QVERIFY(assets.puffs(false).isEmpty());
        QVERIFY(QFile::remove(dir.filePath(QStringLiteral("puff-dark-2.png"))));
        QCOMPARE(assets.puffs(true), expected);
        QVERIFY(assets.url(QStringLiteral("puff-dark-2.png")).isEmpty());
    }

    // Nothing runs while the steamer is parked, the jet off or the loader
    // hidden, nor at all under reduced motion; while jetting, active or shown,
    // the one driver runs, and stops again afterwards.
    void idleRunsNothing_data()
    {
        QTest::addColumn<QByteArray>("qml");
        QTest::addColumn<QByteArray>("on");
        QTest::newRow("steamer") << QByteArray("FlatSteamer { x: 120; y: 100; waterLevel: 0.6 }")
                                 << QByteArray("jetting");
        QTest::newRow("jet") << QByteArray("SteamJet { anchors.fill: parent; from: Qt.point(200, 20); to: Qt.point(40, "
                                           "160) }")
                             << QByteArray("active");
        QTest::newRow("loader") << QByteArray("SorvelLoader { size: 28; visible: false }") << QByteArray("visible");
    }

    void idleRunsNothing()
    {
        QFETCH(QByteArray, qml);
        QFETCH(QByteArray, on);
        for (const QByteArray reduce : {"0", "1"}) {
            ScopedEnv motion("SORVEL_REDUCE_MOTION", reduce);
            Stage stage(qml);
            QVERIFY2(stage.scene.warnings.isEmpty(), qPrintable(stage.scene.warningText()));
            QQuickItem *item = stage.item();
            QVERIFY(item);
            QTest::qWait(50);
            QVERIFY2(runningMotion(item).isEmpty(), qPrintable(runningMotion(item).join(u',')));

            item->setProperty(on.constData(), true);
            QTest::qWait(120);
            if (reduce == "1") {
                QVERIFY2(runningMotion(item).isEmpty(), qPrintable(runningMotion(item).join(u',')));
                if (qml.startsWith("FlatSteamer"))
                    QCOMPARE(item->property("angle").toDouble(), -24.0);
                continue;
            }
            QVERIFY(!runningMotion(item).isEmpty());
            if (qml.startsWith("FlatSteamer")) {
                QTRY_VERIFY(item->property("angle").toDouble() != -24.0);
                QVERIFY(qAbs(item->property("angle").toDouble() + 24) <= 1.2);
            } else if (qml.startsWith("SteamJet")) {
                QTRY_COMPARE_WITH_TIMEOUT(item->property("strength").toDouble(), 1.0, 1000);
            }
            item->setProperty(on.constData(), false);
            QTRY_VERIFY2_WITH_TIMEOUT(runningMotion(item).isEmpty(), qPrintable(runningMotion(item).join(u',')), 1500);
            if (qml.startsWith("FlatSteamer"))
                QCOMPARE(item->property("angle").toDouble(), -24.0);
            else if (qml.startsWith("SteamJet"))
                QCOMPARE(item->property("strength").toDouble(), 0.0);
        }
    }

    // The nozzle the steamer draws is where the jet starts: its tip, mapped
    // out of the turned and scaled drawing, lies at `nozzle`.
    void nozzleTipDrawnAtNozzle()
    {
        Stage stage("FlatSteamer { x: 120; y: 100 }");
        QQuickItem *steamer = stage.item();
        QVERIFY(steamer);
        auto *tip = steamer->findChild<QQuickItem *>(QStringLiteral("nozzleTip"));
        QVERIFY(tip);
        const QPointF drawn = tip->mapToItem(steamer, QPointF(0, 0));
        const QPointF nozzle = steamer->property("nozzle").toPointF();
        QCOMPARE(nozzle, QPointF(-52.8, 32.4));
        QVERIFY2(QLineF(drawn, nozzle).length() < 0.01,
                 qPrintable(QStringLiteral("%1, %2").arg(drawn.x()).arg(drawn.y())));
    }

    // With motion on, the gallery's jet puts steam on the canvas in both
    // appearances, where the ground would otherwise be plain. With
    // SORVEL_SCREENSHOT_DIR set it saves gallery-motion-dark.png and
    // gallery-motion-light.png.
    void steamShows_data()
    {
        QTest::addColumn<QByteArray>("appearance");
        QTest::newRow("dark") << QByteArray("dark");
        QTest::newRow("light") << QByteArray("light");
    }

    void steamShows()
    {
        QFETCH(QByteArray, appearance);
        ScopedEnv env("SORVEL_APPEARANCE", appearance);
        ScopedEnv motion("SORVEL_REDUCE_MOTION", "0");
        WatchedView scene;
        QVERIFY2(scene.showFile(QStringLiteral("qrc:/Sorvel/Ui/look/Gallery.qml")), qPrintable(scene.error));
        QQuickView &view = scene.view;
        QQuickItem *jet = firstOfType(view.rootObject(), "SteamJet");
        QVERIFY(jet);
        QTRY_COMPARE(jet->property("strength").toDouble(), 1.0);
        QTest::qWait(400);
        QVERIFY2(scene.warnings.isEmpty(), qPrintable(scene.warningText()));

        const QImage shot = view.grabWindow();
        const QByteArray dir = qgetenv("SORVEL_SCREENSHOT_DIR");
        if (!dir.isEmpty()) {
            QDir().mkpath(QFile::decodeName(dir));
            QVERIFY(shot.save(QFile::decodeName(dir) + QStringLiteral("/gallery-motion-") +
                              QString::fromLatin1(appearance) + QStringLiteral(".png")));
        }
        const QPointF to = jet->mapToScene(jet->property("to").toPointF());
        const QColor canvas = view.rootObject()->property("color").value<QColor>();
        int steam = 0;
        for (int y = int(to.y()) - 24; y < int(to.y()) + 24; ++y)
            for (int x = int(to.x()) - 24; x < int(to.x()) + 24; ++x)
                if (qAbs(QColor(shot.pixel(x, y)).lightness() - canvas.lightness()) > 12)
                    ++steam;
        QVERIFY2(steam > 200, qPrintable(QString::number(steam)));
    }
};

SORVEL_TEST(SteamTest);
#include "tst_steam.moc"
