#include "Stain.h"

#include "Oklch.h"

#include <QPainter>
#include <QRadialGradient>

#include <cmath>

namespace {

// Muddy brown: reads as dirt on light and dark icons alike.
constexpr OKLCH stainColor{0.5, 0.075, 65, 1};

// The blotches in the 40-point frame, centred on (0, 0): x, y, width, height,
// opacity. A smear of overlapping soft patches, drops beside it and specks.
struct Blot {
    double x, y, w, h, alpha;
};
constexpr Blot blots[] = {
    {-8, 3, 20, 13, 0.5}, {-1, 7, 15, 8, 0.45},      {5, 1, 11, 8, 0.35},  {-13, -3, 9, 8, 0.4},  {-4, -2, 8, 6, 0.3},
    {10, 9, 7, 5, 0.45},  {-7, -10, 6, 4, 0.4},      {12, -6, 5, 4, 0.35}, {-16, 10, 4, 3, 0.45}, {3, 14, 3.5, 3, 0.5},
    {15, 3, 3, 2.5, 0.5}, {-2, -15, 2.5, 2.2, 0.45}, {8, -12, 2, 2, 0.5},  {-18, 0, 2, 2, 0.45},  {16, 12, 2, 1.8, 0.5},
};

int positiveMod(int value, int modulus) { return ((value % modulus) + modulus) % modulus; }

} // namespace

Stain::Placement Stain::placement(int seed)
{
    return {double(positiveMod(int(std::fmod(double(seed) * 47.0, 360.0)), 360)),
            double(positiveMod(seed, 3) - 1) * 6.0, double(positiveMod(seed, 2)) * 8.0};
}

void Stain::paint(QPainter &painter, const QRectF &target, int seed)
{
    const Placement place = placement(seed);
    const double scale = target.width() / frame;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.translate(target.center());
    painter.scale(scale, scale);
    painter.translate(place.dx, place.dy);
    painter.rotate(place.rotation);
    // Each patch is darkest in its middle and thins out to a soft edge.
    const QColor base = stainColor.color();
    for (const Blot &blot : blots) {
        QRadialGradient gradient(QPointF(0, 0), 1);
        QColor color = base;
        color.setAlphaF(float(blot.alpha));
        gradient.setColorAt(0, color);
        color.setAlphaF(float(blot.alpha * 0.8));
        gradient.setColorAt(0.55, color);
        color.setAlphaF(0);
        gradient.setColorAt(1, color);
        painter.save();
        painter.translate(blot.x, blot.y);
        painter.scale(blot.w / 2, blot.h / 2);
        painter.setBrush(gradient);
        painter.drawEllipse(QPointF(0, 0), 1, 1);
        painter.restore();
    }
    painter.restore();
}

QImage Stain::applied(const QImage &icon, int seed)
{
    QImage out = icon.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    // Saturation 0.7: each channel moves 30 % of the way to the pixel's
    // luminance. Premultiplied values scale alike, so alpha is untouched.
    for (int y = 0; y < out.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(out.scanLine(y));
        for (int x = 0; x < out.width(); ++x) {
            const QRgb p = line[x];
            const double grey = 0.2126 * qRed(p) + 0.7152 * qGreen(p) + 0.0722 * qBlue(p);
            const auto towards = [grey](int c) { return int(std::lround(grey + saturation * (c - grey))); };
            line[x] = qRgba(towards(qRed(p)), towards(qGreen(p)), towards(qBlue(p)), qAlpha(p));
        }
    }

    QImage stain(out.size(), QImage::Format_ARGB32_Premultiplied);
    stain.fill(Qt::transparent);
    {
        QPainter painter(&stain);
        const double side = std::min(out.width(), out.height());
        paint(painter, QRectF((out.width() - side) / 2, (out.height() - side) / 2, side, side), seed);
        // Only where the icon is.
        painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        painter.drawImage(0, 0, out);
    }
    QPainter painter(&out);
    painter.drawImage(0, 0, stain);
    return out;
}
