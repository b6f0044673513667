// Motion: the timing curves of the interface's movements, as constants with
// their durations. No state; any thread.
#pragma once

#include "Spring.h"

#include <QEasingCurve>

#include <cmath>

namespace Motion {
// A cubic Bézier timing curve from (0, 0) to (1, 1) with two control points.
struct Curve {
    double x1;
    double y1;
    double x2;
    double y2;
    double seconds;

    QEasingCurve easing() const;
    int milliseconds() const { return int(std::lround(seconds * 1000.0)); }
};

inline constexpr Curve press{0.23, 1, 0.32, 1, 0.12};
inline constexpr Curve hover{0.23, 1, 0.32, 1, 0.16};
inline constexpr Curve modal{0.23, 1, 0.32, 1, 0.26};
inline constexpr Curve indicator{0.77, 0, 0.175, 1, 0.25};
inline constexpr Curve evaporate{0.3, 0, 0.6, 1, 1.0};
// The last step of a removal: the rows it took leave and the rest close up.
inline constexpr Curve closing{0.77, 0, 0.175, 1, 0.28};

// The selection bar coming in and going.
inline constexpr Spring bar{0.4, 0.85};

// The standard curve at a duration of its own.
constexpr Curve standard(double seconds) { return {0.23, 1, 0.32, 1, seconds}; }
} // namespace Motion
