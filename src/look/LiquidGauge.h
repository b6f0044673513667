// LiquidGauge: the colours of a level shown as a liquid. Pure functions; any
// thread.
#pragma once

#include <QColor>

// A level as a liquid: cool accent hues (195 at the surface to 212 in the
// depth) up to 0.9, a warm one (30) from 0.9 on, when the level means trouble
// (a disk nearly full).
class LiquidGauge
{
public:
    static constexpr double warmFrom = 0.9;

    static bool isWarm(double fraction) { return fraction >= warmFrom; }
    // The liquid's colour at `depth` (0 at the surface, 1 at the bottom).
    static QColor color(double fraction, double depth, bool dark);
};
