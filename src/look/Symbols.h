// Symbols: the small line icons of the interface, read from the resources and
// drawn in one colour. Plain functions whose SVG cache is locked, so they may be
// called from any thread.
#pragma once

#include <QColor>
#include <QImage>
#include <QString>
#include <QUrl>

// Symbols are small line icons known by dotted names
// ("sparkles", "house.fill"). Each name maps to one open SVG icon (Lucide), in
// the table icons/symbols.txt; the build copies just those into the resources.
namespace Symbols {
// True when the name is in the table.
bool has(const QString &name);
// The symbol drawn in one colour into a square of the given size; an unknown
// name draws a question mark, so a typo shows instead of leaving a hole.
QImage render(const QString &name, const QColor &color, QSize size);
// The image URL QML shows a symbol by: image://symbol/<rrggbbaa>/<name>.
QUrl source(const QString &name, const QColor &color);
} // namespace Symbols
