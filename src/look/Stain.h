// Stain: the grime on the icon of a tile that holds rebuildable junk. Pure
// painting on images; any thread.
#pragma once

#include <QImage>

class QPainter;
class QRectF;

// Blotches around an icon. A tile's seed turns and shifts them, so that two
// neighbouring stains rarely look alike and one tile keeps its look across
// redraws:
//   rotation   = (seed × 47) mod 360 degrees
//   offset x   = ((seed mod 3) − 1) × 6 points
//   offset y   = (seed mod 2) × 8 points
// The stain is drawn in a frame of 40 points and scaled to the icon's size.
class Stain
{
public:
    struct Placement {
        double rotation;
        double dx;
        double dy;
    };

    static Placement placement(int seed);

    static constexpr double frame = 40;
    static constexpr double saturation = 0.7;

    // Paints the blotches for `seed` into `target` (a square of any size).
    static void paint(QPainter &painter, const QRectF &target, int seed);

    // The icon as a stained one: its colours at saturation 0.7 and the stain
    // over them, masked by the icon's own shape (nothing is drawn where the
    // icon is transparent).
    static QImage applied(const QImage &icon, int seed);
};
