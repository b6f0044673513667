// Sort keys for the name order of the Space explorer: bytes that compare with
// memcmp (shorter first on a common prefix) exactly as NameOrder::compare
// compares the names themselves, so a long list is sorted on keys made once
// per name instead of walking both names in every comparison. Plain
// functions; any thread.

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

namespace NameKey {

// Appends the key of `name` to `out`. Letters fold case; a run of ASCII digits
// becomes one token that orders by value (leading zeros ignored), and sits
// where a digit sits among other characters. False, with `out` in an
// unspecified state, for a name with digits of another script (their order
// beside other characters depends on the digit itself): sort those with
// NameOrder::compare.
bool append(QByteArray &out, QStringView name);
// The same for Latin-1 text.
bool append(QByteArray &out, QLatin1String name);

} // namespace NameKey
