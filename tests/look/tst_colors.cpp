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
        QTest::newRow("dark canvas, linear toe") << 0.155 << 0.0 << 0.0 << 0.0476047 << 0.0476047 << 0.0476047;
        QTest::newRow("sRGB red") << 0.62795536 << 0.2576833 << 29.2338851 << 1.0 << 0.0 << 0.0;
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
    }

    void colorCarriesOpacity()
    {
        const QColor surface = Palette::surface.dark.color();
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

    // Each curve is a Bézier from (0, 0) to (1, 1) that never runs back.
    void curves()
    {
        for (const Motion::Curve &curve :
             {Motion::press, Motion::hover, Motion::modal, Motion::indicator, Motion::evaporate}) {
            const QEasingCurve easing = curve.easing();
            QCOMPARE(easing.type(), QEasingCurve::BezierSpline);
            const QList<QPointF> points = easing.toCubicSpline();
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
    }
};

SORVEL_TEST(ColorsTest);
#include "tst_colors.moc"
