#include "Motion.h"

#include <QPointF>

namespace Motion {

QEasingCurve Curve::easing() const
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(QPointF(x1, y1), QPointF(x2, y2), QPointF(1, 1));
    return curve;
}

} // namespace Motion
