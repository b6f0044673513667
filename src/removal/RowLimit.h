// How many rows a long list in a removal sheet draws and the line that counts
// the rest. Pure functions; any thread.

#pragma once

#include <QString>

namespace RowLimit {
inline constexpr qsizetype deletionRows = 500;
inline constexpr qsizetype failureRows = 150;
qsizetype shown(qsizetype count, qsizetype limit);
// "and 3 more", or empty when everything is drawn.
QString moreLine(qsizetype count, qsizetype limit);
} // namespace RowLimit
