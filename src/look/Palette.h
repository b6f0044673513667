#pragma once

#include "Oklch.h"

#include <QEasingCurve>
#include <QFont>

#include <array>
#include <cmath>

// The colours, gradients, small fonts and timing curves every view draws with.
// Views never name a colour of their own: QML reads all of this through the
// Look singleton, which resolves each adaptive colour by the current
// appearance.

// A colour with one value for dark and one for light appearance.
struct AdaptiveColor {
    OKLCH dark;
    OKLCH light;

    const OKLCH &resolve(bool isDark) const { return isDark ? dark : light; }
};

namespace Palette {
inline constexpr AdaptiveColor canvas{{0.155, 0, 0, 1}, {0.975, 0, 0, 1}};
inline constexpr AdaptiveColor surface{{1, 0, 0, 0.07}, {1, 0, 0, 1}};
inline constexpr AdaptiveColor raised{{1, 0, 0, 0.11}, {0.965, 0, 0, 1}};
inline constexpr AdaptiveColor well{{0, 0, 0, 0.24}, {0.93, 0, 0, 1}};
inline constexpr AdaptiveColor line{{1, 0, 0, 0.1}, {0.905, 0, 0, 1}};
inline constexpr AdaptiveColor lineStrong{{1, 0, 0, 0.22}, {0.83, 0, 0, 1}};
inline constexpr AdaptiveColor panel{{0.215, 0.028, 242, 1}, {1, 0, 0, 1}};
inline constexpr AdaptiveColor ink{{0.965, 0, 0, 1}, {0.21, 0, 0, 1}};
inline constexpr AdaptiveColor ink2{{0.76, 0, 0, 1}, {0.45, 0, 0, 1}};
// Lighter than ink2 on a light ground, on purpose.
inline constexpr AdaptiveColor ink3{{0.57, 0, 0, 1}, {0.61, 0, 0, 1}};
inline constexpr AdaptiveColor accent{{0.82, 0.11, 195, 1}, {0.66, 0.12, 212, 1}};
inline constexpr AdaptiveColor honeyInk{{0.85, 0.14, 82, 1}, {0.45, 0.11, 70, 1}};
inline constexpr AdaptiveColor ember{{0.632, 0.1932, 30, 1}, {0.552, 0.1932, 30, 1}};
inline constexpr AdaptiveColor sorvelSubtle{{0.82, 0.11, 195, 0.14}, {0.66, 0.12, 212, 0.13}};
inline constexpr AdaptiveColor emberSubtle{{0.6, 0.21, 30, 0.18}, {0.6, 0.21, 30, 0.11}};

// One value in both appearances.
inline constexpr OKLCH onAccent{0.22, 0.04, 235, 1};
inline constexpr OKLCH honey{0.85, 0.14, 82, 1};
inline constexpr OKLCH magma{0.63, 0.22, 18, 1};
inline constexpr OKLCH glass{1, 0, 0, 0.045};
inline constexpr OKLCH glassEdge{1, 0, 0, 0.09};
// What dims the window behind a sheet (drawn at the backdrop's opacity).
inline constexpr OKLCH scrim{0, 0, 0, 1};

// Gradients, as their stops from first to last.
inline constexpr std::array<OKLCH, 3> sorvel{{{0.95, 0.03, 195, 1}, {0.82, 0.11, 195, 1}, {0.66, 0.12, 212, 1}}};
inline constexpr std::array<OKLCH, 2> sorvelFlat{{{0.872, 0.078, 195, 1}, {0.82, 0.11, 195, 1}}};
} // namespace Palette

namespace Room {
inline constexpr OKLCH burnDim{0.82, 0.035, 212, 1};
}

namespace Typo {
// Sizes are in logical pixels, the unit of every size in the interface (a
// point in the look's measures is one logical pixel).
// The system font at 11 pixels, medium weight.
QFont caption();
// The system font at 10 pixels, semibold.
QFont micro();
} // namespace Typo

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
} // namespace Motion
