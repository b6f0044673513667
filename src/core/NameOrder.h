// The order of names as people sort them in a file manager: by the collation
// of the user's language, case ignored and runs of digits compared by value,
// so "file2" comes before "File10" and a decomposed "é" sorts as the composed
// one. Plain functions; any thread (each thread has a collator of its own).

#pragma once

#include <QCollator>
#include <QStringView>

namespace NameOrder {

// Below 0 when a goes first, 0 when they tie, above 0 otherwise.
int compare(QStringView a, QStringView b);

// The collator behind compare, for sort keys made once per name: numeric,
// case-insensitive, in the user's locale (English when that is the C locale,
// which collates by code alone). Belongs to the calling thread.
const QCollator &collator();

} // namespace NameOrder
