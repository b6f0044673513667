#include "QmlErrors.h"
#include "RunningMotion.h"
#include "ScopedEnv.h"
#include "TestMain.h"
#include "WatchedView.h"

#include "EvaporateTrigger.h"
#include "LiquidGauge.h"
#include "Look.h"
#include "Stain.h"

#include <QFile>
#include <QPainter>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QSGRendererInterface>

#include <memory>

// The rules of the steam effects, and the effects drawn under the software
// renderer (the offscreen platform), where shaders can't run.
class EffectsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void triggerTable_data()
    {
        QTest::addColumn<bool>("reduced");
        QTest::addColumn<bool>("vanishing");
        QTest::addColumn<bool>("fade");
        QTest::addColumn<double>("progress");
        QTest::addColumn<double>("opacity");
        QTest::addColumn<int>("milliseconds");
        QTest::addColumn<double>("x1");
        QTest::newRow("reduced, vanishing") << true << true << true << 0.0 << 0.0 << 250 << 0.23;
        QTest::newRow("reduced, back") << true << false << true << 0.0 << 1.0 << 250 << 0.23;
        QTest::newRow("full, vanishing") << false << true << false << 1.0 << 1.0 << 1000 << 0.3;
        QTest::newRow("full, back") << false << false << false << 0.0 << 1.0 << 200 << 0.23;
    }

    void triggerTable()
    {
        QFETCH(bool, reduced);
        QFETCH(bool, vanishing);
        QFETCH(bool, fade);
        QFETCH(double, progress);
        QFETCH(double, opacity);
        QFETCH(int, milliseconds);
        QFETCH(double, x1);
        const EvaporateTrigger::Step step = EvaporateTrigger::step(reduced, vanishing);
        QCOMPARE(step.effect == EvaporateTrigger::Effect::fade, fade);
        QCOMPARE(step.progress, progress);
        QCOMPARE(step.opacity, opacity);
        QCOMPARE(step.curve.milliseconds(), milliseconds);
        QCOMPARE(step.curve.x1, x1);
    }

    // Neighbouring seeds land differently; the figures follow the rule
    // rotation (seed × 47) mod 360, x ((seed mod 3) − 1) × 6, y (seed mod 2) × 8.
    void stainPlacement()
    {
        QList<QPointF> offsets;
        for (const int seed : {0, 1, 2})
            offsets << QPointF(Stain::placement(seed).dx, Stain::placement(seed).dy);
        QCOMPARE(offsets, (QList<QPointF>{{-6, 0}, {0, 8}, {6, 0}}));
        QCOMPARE(Stain::placement(8).rotation, 16.0); // 376 mod 360
        QCOMPARE(Stain::placement(996).rotation, double(996 * 47 % 360));
        QCOMPARE(Stain::placement(-1).dx, 6.0); // never outside the three places
    }

    // The stain stays inside the icon's shape, the icon loses saturation, and
    // two seeds give two different pictures.
    void stainIsMaskedByTheIcon()
    {
        QImage icon(80, 80, QImage::Format_ARGB32_Premultiplied);
        icon.fill(Qt::transparent);
        {
            QPainter painter(&icon);
            painter.fillRect(QRect(0, 0, 40, 80), QColor(230, 40, 40)); // left half: a red icon
        }
        const QImage a = Stain::applied(icon, 3);
        const QImage b = Stain::applied(icon, 4);
        QVERIFY(a != b);
        int stained = 0;
        for (int y = 0; y < 80; ++y) {
            for (int x = 0; x < 80; ++x) {
                const QColor c = a.pixelColor(x, y);
                if (x >= 40) {
                    QVERIFY2(c.alpha() == 0, "the stain leaked outside the icon");
                    continue;
                }
                QCOMPARE(c.alpha(), 255);
                QVERIFY(c.hsvSaturationF() < QColor(230, 40, 40).hsvSaturationF());
                if (c.valueF() < 0.7)
                    ++stained;
            }
        }
        QVERIFY2(stained > 80, "no grime on the icon");
    }

    void gaugeTurnsWarmAtNinetyPercent()
    {
        QVERIFY(!LiquidGauge::isWarm(0.899));
        QVERIFY(LiquidGauge::isWarm(0.9));
        for (const bool dark : {true, false}) {
            const QColor cool = LiquidGauge::color(0.5, 0.5, dark);
            const QColor warm = LiquidGauge::color(0.95, 0.5, dark);
            QVERIFY(cool.blue() > cool.red());
            QVERIFY(warm.red() > warm.blue());
            // Deeper is the bluer hue of the cool range.
            QVERIFY(LiquidGauge::color(0.5, 1, dark).hueF() > LiquidGauge::color(0.5, 0, dark).hueF());
        }
    }

    // Under the software renderer the evaporation takes the fallback: the
    // picture, blurred, lifts and fades; no shader is made and nothing warns.
    // When the item comes back the effect leaves no trace and nothing runs.
    void fallbackUnderTheSoftwareRenderer()
    {
        ScopedEnv motion("SORVEL_REDUCE_MOTION", "0");
        WatchedView scene;
        QVERIFY2(scene.showText(R"(
            import QtQuick
            import Sorvel.Ui
            Rectangle {
                width: 300; height: 300; color: "white"
                property alias vanishing: trigger.isVanishing
                property alias trigger: trigger
                EvaporateTrigger {
                    id: trigger
                    x: 100; y: 150; width: 100; height: 100
                    tileSeed: 500
                    Rectangle { anchors.fill: parent; color: "black" }
                }
            }
        )"),
                 qPrintable(scene.error));
        QQuickView &view = scene.view;
        if (view.rendererInterface()->graphicsApi() != QSGRendererInterface::Software)
            QSKIP("shader effects run here");
        QObject *root = scene.root();
        auto *trigger = root->property("trigger").value<QQuickItem *>();
        QVERIFY(!trigger->property("shaded").toBool());

        root->setProperty("vanishing", true);
        QTRY_VERIFY(trigger->property("progress").toDouble() > 0.55);
        QVERIFY(trigger->findChildren<QObject *>().size() > 0);
        bool shader = false;
        for (const QObject *object : trigger->findChildren<QObject *>())
            shader = shader || object->inherits("QQuickShaderEffect");
        QVERIFY2(!shader, "a shader effect was made where none can run");
        const QImage mid = view.grabWindow();
        // Lifted: something dark shows above the item's own top edge.
        bool above = false;
        for (int x = 100; x < 200 && !above; ++x)
            above = mid.pixelColor(x, 142).lightnessF() < 0.95;
        QVERIFY2(above, "the fallback did not lift the picture");
        QTRY_COMPARE(trigger->property("progress").toDouble(), 1.0);
        const QImage gone = view.grabWindow();
        QVERIFY(gone.pixelColor(150, 200).lightnessF() > 0.95);

        root->setProperty("vanishing", false);
        QTRY_VERIFY_WITH_TIMEOUT(trigger->property("progress").toDouble() == 0.0, 500);
        QTRY_VERIFY(runningMotion(root).isEmpty());
        QVERIFY(view.grabWindow().pixelColor(150, 200).lightnessF() < 0.1);
        QVERIFY2(scene.warnings.isEmpty(), qPrintable(scene.warningText()));
    }

    // One evaporation in eight steps, on whatever renderer runs: the picture
    // at 0 is the item as it is, ink leaves the item's frame step by step and
    // some of it rises above it, and at 1 nothing is left. With
    // SORVEL_SCREENSHOT_DIR set the steps are saved side by side.
    void evaporationSteps_data()
    {
        QTest::addColumn<QByteArray>("appearance");
        QTest::newRow("dark") << QByteArray("dark");
        QTest::newRow("light") << QByteArray("light");
    }

    void evaporationSteps()
    {
        QFETCH(QByteArray, appearance);
        ScopedEnv env("SORVEL_APPEARANCE", appearance);
        WatchedView scene;
        QVERIFY2(scene.showText(R"(
            import QtQuick
            import Sorvel.Ui
            Rectangle {
                width: 8 * 140; height: 300
                color: Look.canvas
                Repeater {
                    model: 8
                    EvaporateEffect {
                        required property int index
                        x: 10 + index * 140; y: 160; width: 120; height: 120
                        progress: index / 7
                        seed: 0.4
                        Rectangle {
                            anchors.fill: parent; radius: 22
                            color: Look.sorvelSubtle; border.color: Look.accent
                            ConditionedIcon { y: 12; size: 64; anchors.horizontalCenter: parent.horizontalCenter
                                              path: "/tmp/"; condition: "stained"; seed: 7 }
                            Text { y: 86; anchors.horizontalCenter: parent.horizontalCenter
                                   text: "node_modules"; color: Look.ink; font.pixelSize: 12 }
                        }
                    }
                }
            }
        )"),
                 qPrintable(scene.error));
        QQuickView &view = scene.view;
        QTest::qWait(300);
        const QImage shot = view.grabWindow();
        const QByteArray dir = qgetenv("SORVEL_SCREENSHOT_DIR");
        if (!dir.isEmpty()) {
            const bool software = view.rendererInterface()->graphicsApi() == QSGRendererInterface::Software;
            QVERIFY(shot.save(QFile::decodeName(dir) + QStringLiteral("/evaporation-steps%1-%2.png")
                                                           .arg(software ? QStringLiteral("-fallback") : QString(),
                                                                QString::fromLatin1(appearance))));
        }
        const QColor ground = shot.pixelColor(2, 2);
        const auto ink = [&](int step, int top, int bottom) {
            int count = 0;
            for (int y = top; y < bottom; ++y)
                for (int x = step * 140; x < step * 140 + 140; ++x) {
                    const QColor c = shot.pixelColor(x, y);
                    count += std::abs(c.red() - ground.red()) + std::abs(c.green() - ground.green()) > 24;
                }
            return count;
        };
        QVERIFY(ink(0, 0, 155) == 0);
        int rose = 0;
        for (int step = 1; step < 8; ++step) {
            QVERIFY2(ink(step, 160, 280) <= ink(step - 1, 160, 280), qPrintable(QString::number(step)));
            rose += ink(step, 0, 155);
        }
        QVERIFY(ink(5, 160, 280) < ink(0, 160, 280) / 2);
        QVERIFY2(rose > 0, "nothing rose above the items");
        QCOMPARE(ink(7, 0, 300), 0);
    }

    // With reduced motion the evaporation is a plain fade and, once it ended,
    // nothing runs: no gauge sway, no shader, no timer.
    void reducedMotionLeavesNothingRunning()
    {
        ScopedEnv motion("SORVEL_REDUCE_MOTION", "1");
        QQmlEngine engine;
        engine.addImportPath(QStringLiteral("qrc:/"));
        QQmlComponent component(&engine);
        component.setData(R"(
            import QtQuick
            import Sorvel.Ui
            Item {
                width: 300; height: 300
                property alias trigger: trigger
                property alias gauge: gauge
                EvaporateTrigger { id: trigger; width: 100; height: 100; Rectangle { anchors.fill: parent } }
                LiquidGauge { id: gauge; fraction: 0.5 }
            }
        )",
                          QUrl(QStringLiteral("qrc:/tst/Reduced.qml")));
        std::unique_ptr<QObject> root(component.create());
        QVERIFY2(root, qPrintable(component.errorString()));
        auto *trigger = root->property("trigger").value<QObject *>();
        auto *gauge = root->property("gauge").value<QObject *>();
        trigger->setProperty("isVanishing", true);
        gauge->setProperty("fraction", 0.95);
        QMetaObject::invokeMethod(gauge, "stir");
        QCOMPARE(trigger->property("progress").toDouble(), 0.0);
        QTRY_COMPARE(trigger->property("opacity").toDouble(), 0.0);
        QCOMPARE(gauge->property("sway").toDouble(), 0.0);
        QCOMPARE(gauge->property("warm").toBool(), true);
        QTRY_VERIFY2(runningMotion(root.get()).isEmpty(), qPrintable(runningMotion(root.get()).join(", ")));
    }
};

SORVEL_TEST(EffectsTest);
#include "tst_effects.moc"
