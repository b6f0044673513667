#include "SheetText.h"

#include "core/Fmt.h"
#include "core/Paths.h"

#include <algorithm>

namespace SheetText {

QString sizeText(qint64 size) { return Fmt::bytes(std::max<qint64>(size, 0)); }

QString nameOf(const QByteArray &path) { return Paths::toDisplay(Paths::lastComponent(path)); }

} // namespace SheetText
