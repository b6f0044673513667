// Typo: the small fonts of the interface, built from the system font. No
// state; called on the GUI thread, where the font database is.
#pragma once

#include <QFont>

namespace Typo {
// Sizes are in logical pixels, the unit of every size in the interface (a
// point in the look's measures is one logical pixel).
// The system font at 11 pixels, medium weight.
QFont caption();
// The system font at 10 pixels, semibold.
QFont micro();
} // namespace Typo
