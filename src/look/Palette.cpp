#include "Palette.h"

#include <QFontDatabase>
#include <QPointF>

namespace Typo {

QFont caption()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(11);
    font.setWeight(QFont::Medium);
    return font;
}

QFont micro()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(10);
    font.setWeight(QFont::DemiBold);
    return font;
}

} // namespace Typo

namespace Motion {

QEasingCurve Curve::easing() const
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(QPointF(x1, y1), QPointF(x2, y2), QPointF(1, 1));
    return curve;
}

} // namespace Motion
