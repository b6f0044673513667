// The order of names as people sort them in a file manager: case ignored and
// runs of digits compared by value, so "file2" comes before "File10". Plain
// functions; any thread.

#pragma once

#include <QStringView>

namespace NameOrder {

// Below 0 when a goes first, 0 when they tie, above 0 otherwise.
int compare(QStringView a, QStringView b);

} // namespace NameOrder
