// OKLCH: a colour value of the interface and its conversion to sRGB. A plain
// value without state; any thread.
#pragma once

#include <QColor>

// A colour in the OKLCH space: lightness 0 to 1, chroma, hue in degrees, and an
// opacity. Every colour of the interface is defined this way and turned into
// sRGB only when it is drawn.
struct OKLCH {
    double L = 0;
    double C = 0;
    double H = 0;
    double opacity = 1;

    struct Rgb {
        double r = 0;
        double g = 0;
        double b = 0;
    };

    // The published OKLab conversion followed by the sRGB transfer function.
    // A colour outside the sRGB gamut is clamped channel by channel (its chroma
    // is not reduced), so the result always lies in 0...1.
    Rgb srgb() const;
    QColor color() const;

    OKLCH withOpacity(double value) const { return {L, C, H, value}; }
};
