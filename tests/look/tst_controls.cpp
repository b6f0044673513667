#include "QmlErrors.h"
#include "ScopedEnv.h"
#include "TestMain.h"
#include "WatchedView.h"

#include "look/Motion.h"

#include <QDir>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QSet>

#include <cmath>
#include <memory>

// The controls load without a QML warning and draw in both appearances. With
// SORVEL_SCREENSHOT_DIR set, the gallery of controls is saved there as
// gallery-dark.png and gallery-light.png.
class ControlsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void gallery_data()
    {
        QTest::addColumn<QByteArray>("appearance");
        QTest::newRow("dark") << QByteArray("dark");
        QTest::newRow("light") << QByteArray("light");
    }

    void gallery()
    {
        QFETCH(QByteArray, appearance);
        ScopedEnv env("SORVEL_APPEARANCE", appearance);
        ScopedEnv motion("SORVEL_REDUCE_MOTION", "1");

        WatchedView scene;
        QVERIFY2(scene.showFile(QStringLiteral("qrc:/Sorvel/Ui/look/Gallery.qml")), qPrintable(scene.error));
        QTest::qWait(100);
        QVERIFY2(scene.warnings.isEmpty(), qPrintable(scene.warningText()));
        QQuickView &view = scene.view;

        const QImage shot = view.grabWindow();
        QVERIFY(!shot.isNull());
        const QColor corner = shot.pixelColor(2, 2);
        if (appearance == "dark")
            QVERIFY(corner.lightnessF() < 0.2);
        else
            QVERIFY(corner.lightnessF() > 0.9);
        QSet<QRgb> colours;
        for (int y = 0; y < shot.height(); y += 3)
            for (int x = 0; x < shot.width(); x += 3)
                colours.insert(shot.pixel(x, y));
        QVERIFY2(colours.size() > 50, "the gallery drew next to nothing");

        const QByteArray dir = qgetenv("SORVEL_SCREENSHOT_DIR");
        if (!dir.isEmpty()) {
            QDir().mkpath(QFile::decodeName(dir));
            QVERIFY(shot.save(QFile::decodeName(dir) + QStringLiteral("/gallery-") + QString::fromLatin1(appearance) +
                              QStringLiteral(".png")));
        }
    }

    void reducedMotionAppliesAtOnce_data()
    {
        QTest::addColumn<QByteArray>("reduce");
        QTest::addColumn<int>("plain");
        QTest::addColumn<int>("essential");
        QTest::newRow("animations on") << QByteArray("0") << 260 << 260;
        QTest::newRow("reduced motion") << QByteArray("1") << 0 << 260;
    }

    void reducedMotionAppliesAtOnce()
    {
        QFETCH(QByteArray, reduce);
        QFETCH(int, plain);
        QFETCH(int, essential);
        ScopedEnv env("SORVEL_REDUCE_MOTION", reduce);

        QQmlEngine engine;
        engine.addImportPath(QStringLiteral("qrc:/"));
        QQmlComponent component(&engine);
        component.setData(R"(
            import QtQuick
            import Sorvel.Ui
            Item {
                id: root
                property real value: 0
                property alias plain: plain.duration
                property alias essential: essential.duration
                Behavior on value { Movement { id: plain; curve: Look.modal } }
                Movement { id: essential; curve: Look.modal; essential: true }
            }
        )",
                          QUrl(QStringLiteral("qrc:/tst/Motion.qml")));
        std::unique_ptr<QObject> item(component.create());
        QVERIFY2(item, qPrintable(component.errorString()));
        QCOMPARE(item->property("plain").toInt(), plain);
        QCOMPARE(item->property("essential").toInt(), essential);

        item->setProperty("value", 1.0);
        if (plain == 0)
            QTRY_COMPARE_WITH_TIMEOUT(item->property("value").toDouble(), 1.0, 100);
        else
            QVERIFY(item->property("value").toDouble() < 1.0);
    }

    // The selection bar's spring rests at 1 once settled, overshoots only as
    // far as a damping of 0.85 lets it, and is most of the way there after one
    // response; a critically damped one never passes 1.
    void springSettles()
    {
        const Spring spring = Motion::bar;
        const double settle = spring.settleSeconds();
        QVERIFY(settle > 0.4 && settle < 0.8);
        double peak = 0;
        for (double t = 0; t <= 2 * settle; t += 0.001)
            peak = std::max(peak, spring.value(t));
        QVERIFY(peak > 1.0 && peak < 1.01);
        for (double t = settle; t <= 3 * settle; t += 0.01)
            QVERIFY(std::abs(spring.value(t) - 1.0) < 0.0011);
        QVERIFY(spring.value(0.4) > 0.98);
        QCOMPARE(spring.at(0), 0.0);
        QCOMPARE(spring.at(1), 1.0);
        const Spring still(0.4, 1.0);
        for (double t = 0; t <= 2.0; t += 0.01)
            QVERIFY(still.value(t) <= 1.0);
    }

    // A SpringValue moves to its target over the settle time, from wherever
    // it stands when the target changes; under reduced motion it is there at
    // once.
    void springValueFollowsItsTarget_data()
    {
        QTest::addColumn<QByteArray>("reduce");
        QTest::newRow("animations on") << QByteArray("0");
        QTest::newRow("reduced motion") << QByteArray("1");
    }

    void springValueFollowsItsTarget()
    {
        QFETCH(QByteArray, reduce);
        ScopedEnv env("SORVEL_REDUCE_MOTION", reduce);
        QQmlEngine engine;
        engine.addImportPath(QStringLiteral("qrc:/"));
        QQmlComponent component(&engine);
        component.setData(R"(
            import QtQuick
            import Sorvel.Ui
            SpringValue { target: 1 }
        )",
                          QUrl(QStringLiteral("qrc:/tst/Spring.qml")));
        std::unique_ptr<QObject> spring(component.create());
        QVERIFY2(spring, qPrintable(component.errorString()));
        QCOMPARE(spring->property("value").toDouble(), 1.0);
        spring->setProperty("target", 0.0);
        if (reduce == "1") {
            QCOMPARE(spring->property("value").toDouble(), 0.0);
            return;
        }
        QVERIFY(spring->property("value").toDouble() > 0.9);
        QTest::qWait(int(Motion::bar.settleSeconds() * 250));
        const double quarter = spring->property("value").toDouble();
        QVERIFY2(quarter > 0.0 && quarter < 0.9, qPrintable(QString::number(quarter)));
        // Turned back halfway: it starts from where it stands.
        spring->setProperty("target", 1.0);
        QVERIFY(std::abs(spring->property("value").toDouble() - quarter) < 0.05);
        QTRY_COMPARE_WITH_TIMEOUT(spring->property("value").toDouble(), 1.0, 2000);
        QVERIFY(!spring->property("running").toBool());
    }

    // A short list takes only its own height and doesn't scroll; a long one
    // stops at the most and scrolls.
    void shrinkingScrollFitsItsContent()
    {
        QQmlEngine engine;
        engine.addImportPath(QStringLiteral("qrc:/"));
        QQmlComponent component(&engine);
        component.setData(R"(
            import QtQuick
            import Sorvel.Ui
            ShrinkingScroll {
                property int rows: 2
                width: 200
                maxHeight: 120
                contentHeight: rows * 20
            }
        )",
                          QUrl(QStringLiteral("qrc:/tst/Shrinking.qml")));
        std::unique_ptr<QObject> object(component.create());
        auto *scroll = qobject_cast<QQuickItem *>(object.get());
        QVERIFY2(scroll, qPrintable(component.errorString()));
        QCOMPARE(scroll->height(), 40.0);
        QVERIFY(!scroll->property("interactive").toBool());
        scroll->setProperty("rows", 20);
        QCOMPARE(scroll->height(), 120.0);
        QVERIFY(scroll->property("interactive").toBool());
        scroll->setProperty("rows", 3);
        QCOMPARE(scroll->height(), 60.0);
    }
};

SORVEL_TEST(ControlsTest);
#include "tst_controls.moc"
