#include "QmlErrors.h"
#include "ScopedEnv.h"
#include "TestMain.h"
#include "WatchedView.h"

#include <QDir>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QSet>

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
};

SORVEL_TEST(ControlsTest);
#include "tst_controls.moc"
