// SheetText: the size and name texts the removal's sheets show for a path.
// Plain functions owning no state, called on the GUI thread by the sheet models.
#pragma once

#include <QByteArray>
#include <QString>

namespace SheetText {
// The size as the sheets write it; a negative size reads as none.
QString sizeText(qint64 size);
// The last component of the path, for display.
QString nameOf(const QByteArray &path);
} // namespace SheetText
