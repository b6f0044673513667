// sorvel-artwork: draws the look's bitmap artwork into a folder at build time,
// from fixed seeds, so every build makes the same pictures and none is kept in
// the repository.
//
//   sorvel-artwork OUTDIR
//
// writes puff-dark-1.png ... puff-dark-6.png (white steam for the dark canvas),
// puff-light-1.png ... puff-light-6.png (blue-grey steam with a darker rim for
// the light canvas, where an image cannot be tinted) and honey-glow.png (the
// glow behind swollen icons). Exits non-zero when a file cannot be written.
#include "look/Palette.h"

#include <QByteArray>
#include <QColor>
#include <QDir>
#include <QImage>
#include <QString>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <numbers>
#include <vector>

namespace {

constexpr int side = 96;
constexpr int puffCount = 6;

// SplitMix64: the same numbers from the same seed with every compiler and
// standard library, which the distributions of <random> do not promise.
class Random
{
public:
    explicit Random(std::uint64_t seed) : m_state(seed) {}

    double next()
    {
        std::uint64_t z = (m_state += 0x9E3779B97F4A7C15ULL);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        z ^= z >> 31;
        return double(z >> 11) / double(1ULL << 53);
    }
    double between(double low, double high) { return low + (high - low) * next(); }

private:
    std::uint64_t m_state;
};

double smoothstep(double edge0, double edge1, double x)
{
    const double t = std::clamp((x - edge0) / (edge1 - edge0), 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

double mix(double a, double b, double t) { return a + (b - a) * t; }

// Smooth value noise on a lattice of `cell` pixels, its values fixed by seed.
class ValueNoise
{
public:
    ValueNoise(std::uint64_t seed, double cell) : m_cell(cell)
    {
        Random random(seed);
        m_values.resize(size * size);
        for (double &value : m_values)
            value = random.next();
    }

    double at(double x, double y) const
    {
        const double gx = x / m_cell;
        const double gy = y / m_cell;
        const int ix = int(std::floor(gx));
        const int iy = int(std::floor(gy));
        const double fx = smoothstep(0, 1, gx - ix);
        const double fy = smoothstep(0, 1, gy - iy);
        const double top = mix(value(ix, iy), value(ix + 1, iy), fx);
        const double bottom = mix(value(ix, iy + 1), value(ix + 1, iy + 1), fx);
        return mix(top, bottom, fy);
    }

private:
    static constexpr int size = 32;

    double value(int x, int y) const { return m_values[std::size_t(((y & (size - 1)) * size) + (x & (size - 1)))]; }

    double m_cell;
    std::vector<double> m_values;
};

struct Lobe {
    double x;
    double y;
    double radius;
};

// How much steam lies at each pixel, as an optical depth: 0 is none, 1 is
// about two thirds opaque. A cluster of round lobes, big ones inside and small
// ones at the outline so that it billows, broken up by two octaves of noise
// so that it thins in wisps.
std::vector<double> steamDensity(std::uint64_t seed)
{
    Random random(seed);
    std::vector<Lobe> lobes;
    const int count = 11 + int(random.next() * 5);
    for (int i = 0; i < count; ++i) {
        const double angle = random.between(0, 2 * std::numbers::pi);
        const double reach = std::sqrt(random.next()) * 26;
        // Wider than high, as a puff spreads; smaller lobes further out.
        lobes.push_back({side / 2.0 + std::cos(angle) * reach * 1.1, side / 2.0 + std::sin(angle) * reach * 0.8,
                         random.between(8, 13) + (26 - reach) * 0.4});
    }
    const ValueNoise coarse(seed * 31 + 7, 16);
    const ValueNoise fine(seed * 31 + 11, 7);

    std::vector<double> density(side * side);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            double sum = 0;
            for (const Lobe &lobe : lobes) {
                const double dx = (x + 0.5 - lobe.x) / lobe.radius;
                const double dy = (y + 0.5 - lobe.y) / lobe.radius;
                sum += 0.55 * std::exp(-1.8 * (dx * dx + dy * dy));
            }
            const double grain = 0.75 * coarse.at(x, y) + 0.25 * fine.at(x, y);
            double d = sum * (0.55 + 0.8 * grain);
            // Nothing reaches the frame, so no edge is cut off when scaled.
            const double edge = std::min({x + 0.5, y + 0.5, side - x - 0.5, side - y - 0.5});
            d *= smoothstep(1, 12, edge);
            density[std::size_t(y * side + x)] = d;
        }
    }
    return density;
}

// Opacity from optical depth: soft all the way in, never a hard outline.
double opacity(double d) { return 1 - std::exp(-1.5 * d); }

// How lit a pixel is, 0 to 1: brighter where there is less steam towards the
// light, above and to the left, so each billow shows a lit top.
double lighting(const std::vector<double> &density, int x, int y)
{
    const int lx = std::max(0, x - 3);
    const int ly = std::max(0, y - 6);
    const double d = density[std::size_t(y * side + x)];
    const double towardLight = density[std::size_t(ly * side + lx)];
    return std::clamp(0.7 + 0.9 * (d - towardLight) + 0.4 * (0.5 - double(y) / side), 0.0, 1.0);
}

QRgb rgba(const OKLCH::Rgb &rgb, double alpha)
{
    const auto channel = [](double v) { return int(std::lround(std::clamp(v, 0.0, 1.0) * 255)); };
    return qRgba(channel(rgb.r), channel(rgb.g), channel(rgb.b), channel(alpha));
}

OKLCH::Rgb mixRgb(const OKLCH::Rgb &a, const OKLCH::Rgb &b, double t)
{
    return {mix(a.r, b.r, t), mix(a.g, b.g, t), mix(a.b, b.b, t)};
}

// Steam for the dark canvas: near white where it is thick and lit from above,
// a cooler grey in its lower folds, the alpha fading softly at the outline.
QImage darkPuff(const std::vector<double> &density)
{
    const OKLCH::Rgb lit = OKLCH{0.99, 0.005, 215, 1}.srgb();
    const OKLCH::Rgb shade = OKLCH{0.8, 0.025, 225, 1}.srgb();
    QImage image(side, side, QImage::Format_ARGB32);
    for (int y = 0; y < side; ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < side; ++x) {
            const double d = density[std::size_t(y * side + x)];
            line[x] = rgba(mixRgb(shade, lit, lighting(density, x, y)), opacity(d));
        }
    }
    return image;
}

// Steam for the light canvas: a light blue-grey body inside a soft, darker
// rim, so that it stands out from a near-white ground without a tint.
QImage lightPuff(const std::vector<double> &density)
{
    const OKLCH::Rgb body = OKLCH{0.92, 0.018, 230, 1}.srgb();
    const OKLCH::Rgb fold = OKLCH{0.8, 0.03, 232, 1}.srgb();
    const OKLCH::Rgb rim = OKLCH{0.6, 0.045, 238, 1}.srgb();
    QImage image(side, side, QImage::Format_ARGB32);
    for (int y = 0; y < side; ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < side; ++x) {
            const double d = density[std::size_t(y * side + x)];
            // The rim: where the steam thins out, a band that fades both ways.
            const double thin = smoothstep(0.03, 0.4, d) * (1 - smoothstep(0.4, 1.3, d));
            const OKLCH::Rgb colour = mixRgb(mixRgb(fold, body, lighting(density, x, y)), rim, thin * 0.55);
            line[x] = rgba(colour, std::min(1.0, opacity(d) * 1.15));
        }
    }
    return image;
}

// A round glow of honey, full at the centre and gone well before the frame.
QImage honeyGlow()
{
    const OKLCH::Rgb honey = Palette::honey.srgb();
    QImage image(side, side, QImage::Format_ARGB32);
    const double centre = side / 2.0;
    for (int y = 0; y < side; ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < side; ++x) {
            const double r = std::hypot(x + 0.5 - centre, y + 0.5 - centre) / centre;
            const double alpha = std::exp(-3.2 * r * r) * (1 - smoothstep(0.8, 1, r));
            line[x] = rgba(honey, alpha);
        }
    }
    return image;
}

bool save(const QImage &image, const QString &folder, const QString &name)
{
    const QString path = folder + u'/' + name;
    if (image.save(path, "PNG"))
        return true;
    std::fprintf(stderr, "sorvel-artwork: cannot write %s\n", qPrintable(path));
    return false;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: sorvel-artwork OUTDIR\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    if (!QDir().mkpath(folder)) {
        std::fprintf(stderr, "sorvel-artwork: cannot make %s\n", argv[1]);
        return 1;
    }
    bool ok = true;
    for (int i = 1; i <= puffCount; ++i) {
        const std::vector<double> density = steamDensity(0x5731A3ULL + std::uint64_t(i) * 7919);
        ok = save(darkPuff(density), folder, QStringLiteral("puff-dark-%1.png").arg(i)) && ok;
        ok = save(lightPuff(density), folder, QStringLiteral("puff-light-%1.png").arg(i)) && ok;
    }
    ok = save(honeyGlow(), folder, QStringLiteral("honey-glow.png")) && ok;
    return ok ? 0 : 1;
}
