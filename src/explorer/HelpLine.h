// One line of a tile's tooltip: its text and, for a line that leads with a
// mark, the name of the symbol drawn before it (from the app's icon set, so
// the line never depends on an emoji font). A plain value.

#pragma once

#include <QString>

struct HelpLine {
    QString text;
    QString symbol; // empty: no mark

    bool operator==(const HelpLine &) const = default;
};
