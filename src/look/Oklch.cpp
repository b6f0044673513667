#include "Oklch.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

double encode(double linear)
{
    const double x = std::clamp(linear, 0.0, 1.0);
    return x < 0.0031308 ? 12.92 * x : 1.055 * std::pow(x, 1.0 / 2.4) - 0.055;
}

} // namespace

OKLCH::Rgb OKLCH::srgb() const
{
    const double radians = H * std::numbers::pi / 180.0;
    const double a = C * std::cos(radians);
    const double b = C * std::sin(radians);

    const double l_ = L + 0.3963377774 * a + 0.2158037573 * b;
    const double m_ = L - 0.1055613458 * a - 0.0638541728 * b;
    const double s_ = L - 0.0894841775 * a - 1.2914855480 * b;

    const double l = l_ * l_ * l_;
    const double m = m_ * m_ * m_;
    const double s = s_ * s_ * s_;

    const double r = +4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s;
    const double g = -1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s;
    const double bl = -0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s;

    return {encode(r), encode(g), encode(bl)};
}

QColor OKLCH::color() const
{
    const Rgb rgb = srgb();
    return QColor::fromRgbF(float(rgb.r), float(rgb.g), float(rgb.b), float(std::clamp(opacity, 0.0, 1.0)));
}
