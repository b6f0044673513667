#include "LiquidGauge.h"

#include "Oklch.h"

#include <algorithm>

QColor LiquidGauge::color(double fraction, double depth, bool dark)
{
    depth = std::clamp(depth, 0.0, 1.0);
    if (isWarm(fraction)) {
        const double lightness = dark ? 0.7 - 0.08 * depth : 0.64 - 0.08 * depth;
        return OKLCH{lightness, 0.17, 30, 1}.color();
    }
    const double hue = 195 + (212 - 195) * depth;
    const double lightness = dark ? 0.82 - 0.12 * depth : 0.72 - 0.1 * depth;
    return OKLCH{lightness, 0.11 + 0.01 * depth, hue, 1}.color();
}
