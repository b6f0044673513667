// Palette: every colour and gradient of the interface as OKLCH constants, each
// adaptive one with a dark and a light value. Constants only; any thread.
#pragma once

#include "Oklch.h"

#include <array>

// The colours and gradients every view draws with. Views never name a colour of
// their own: QML reads all of this, with the small fonts of Typo and the timing
// curves of Motion, through the Look singleton, which resolves each adaptive
// colour by the current appearance.

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
