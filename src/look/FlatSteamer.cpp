#include "FlatSteamer.h"

#include <cmath>
#include <numbers>

QPointF FlatSteamer::drawnNozzle()
{
    // Undo the turn, then the scale, about the frame's centre.
    const double radians = -stance * std::numbers::pi / 180;
    const QPointF p = nozzle();
    const double x = p.x() * std::cos(radians) - p.y() * std::sin(radians);
    const double y = p.x() * std::sin(radians) + p.y() * std::cos(radians);
    return {width / 2 + x / scale, height / 2 + y / scale};
}

double FlatSteamer::angle(double seconds, bool jetting)
{
    if (!jetting)
        return stance;
    return stance + trembleAmplitude * std::sin(trembleFrequency * seconds);
}
