#include "TestMain.h"

#include "Motion.h"
#include "Palette.h"
#include "Typo.h"

#include <QEasingCurve>

class ColorsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void srgb_data()
    {
        QTest::addColumn<double>("L");
        QTest::addColumn<double>("C");
        QTest::addColumn<double>("H");
        QTest::addColumn<double>("r");
        QTest::addColumn<double>("g");
        QTest::addColumn<double>("b");
        QTest::newRow("white") << 1.0 << 0.0 << 0.0 << 1.0 << 1.0 << 1.0;
        QTest::newRow("black") << 0.0 << 0.0 << 0.0 << 0.0 << 0.0 << 0.0;
        QTest::newRow("dark canvas, linear toe") << 0.155 << 0.0 << 0.0 << 0.0476047 << 0.0476047 << 0.0476047;
        QTest::newRow("sRGB red") << 0.62795536 << 0.2576833 << 29.2338851 << 1.0 << 0.0 << 0.0;
        QTest::newRow("accent, dark") << 0.82 << 0.11 << 195.0 << 0.3685321 << 0.8563241 << 0.8551347;
        // Out of gamut: each channel is clamped on its own; the hue is not
        // pulled in by lowering the chroma, which would leave r and b above 0.
        QTest::newRow("green beyond gamut") << 0.9 << 0.4 << 140.0 << 0.0 << 1.0 << 0.0;
        QTest::newRow("blue beyond gamut") << 0.5 << 0.35 << 264.0 << 0.0 << 0.0 << 1.0;
    }

    void srgb()
    {
        QFETCH(double, L);
        QFETCH(double, C);
        QFETCH(double, H);
        QFETCH(double, r);
        QFETCH(double, g);
        QFETCH(double, b);
        const OKLCH::Rgb rgb = OKLCH{L, C, H, 1}.srgb();
        QVERIFY2(qAbs(rgb.r - r) < 1e-6, qPrintable(QString::number(rgb.r)));
        QVERIFY2(qAbs(rgb.g - g) < 1e-6, qPrintable(QString::number(rgb.g)));
        QVERIFY2(qAbs(rgb.b - b) < 1e-6, qPrintable(QString::number(rgb.b)));
        for (double channel : {rgb.r, rgb.g, rgb.b})
            QVERIFY(channel >= 0.0 && channel <= 1.0);
    }

    void colorCarriesOpacity()
    {
        const QColor surface = Palette::surface.dark.color();
        QCOMPARE(surface.red(), 255);
        QVERIFY(qAbs(surface.alphaF() - 0.07) < 0.005);
        QCOMPARE(Palette::surface.light.color().alpha(), 255);
    }

    void adaptiveColorsFollowTheAppearance()
    {
        // Ink stands out from the canvas in both appearances.
        QVERIFY(Palette::canvas.resolve(true).color().lightnessF() < Palette::ink.resolve(true).color().lightnessF());
        QVERIFY(Palette::canvas.resolve(false).color().lightnessF() > Palette::ink.resolve(false).color().lightnessF());
        // On a light ground the third ink is lighter than the second.
        QVERIFY(Palette::ink3.resolve(false).color().lightnessF() > Palette::ink2.resolve(false).color().lightnessF());
        QVERIFY(Palette::ink3.resolve(true).color().lightnessF() < Palette::ink2.resolve(true).color().lightnessF());
    }

    void curves_data()
    {
        QTest::addColumn<double>("x1");
        QTest::addColumn<double>("y1");
        QTest::addColumn<double>("x2");
        QTest::addColumn<double>("y2");
        QTest::addColumn<int>("ms");
        QTest::newRow("press") << 0.23 << 1.0 << 0.32 << 1.0 << 120;
        QTest::newRow("hover") << 0.23 << 1.0 << 0.32 << 1.0 << 160;
        QTest::newRow("modal") << 0.23 << 1.0 << 0.32 << 1.0 << 260;
        QTest::newRow("indicator") << 0.77 << 0.0 << 0.175 << 1.0 << 250;
        QTest::newRow("evaporate") << 0.3 << 0.0 << 0.6 << 1.0 << 1000;
    }

    void curves()
    {
        QFETCH(double, x1);
        QFETCH(double, y1);
        QFETCH(double, x2);
        QFETCH(double, y2);
        QFETCH(int, ms);
        const std::map<QByteArray, Motion::Curve> byName{{"press", Motion::press},
                                                         {"hover", Motion::hover},
                                                         {"modal", Motion::modal},
                                                         {"indicator", Motion::indicator},
                                                         {"evaporate", Motion::evaporate}};
        const Motion::Curve curve = byName.at(QTest::currentDataTag());
        QCOMPARE(curve.milliseconds(), ms);
        const QEasingCurve easing = curve.easing();
        QCOMPARE(easing.type(), QEasingCurve::BezierSpline);
        const QList<QPointF> points = easing.toCubicSpline();
        QCOMPARE(points.size(), 3);
        QCOMPARE(points[0], QPointF(x1, y1));
        QCOMPARE(points[1], QPointF(x2, y2));
        QCOMPARE(points[2], QPointF(1, 1));
        QVERIFY(qAbs(easing.valueForProgress(0)) < 1e-6);
        QVERIFY(qAbs(easing.valueForProgress(1) - 1) < 1e-6);
        double last = 0;
        for (int i = 1; i <= 20; ++i) {
            const double value = easing.valueForProgress(i / 20.0);
            QVERIFY(value >= last - 1e-9);
            last = value;
        }
    }

    void typo()
    {
        QCOMPARE(Typo::caption().pixelSize(), 11);
        QCOMPARE(Typo::caption().weight(), QFont::Medium);
        QCOMPARE(Typo::micro().pixelSize(), 10);
        QCOMPARE(Typo::micro().weight(), QFont::DemiBold);
    }
};

SORVEL_TEST(ColorsTest);
#include "tst_colors.moc"
