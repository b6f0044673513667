// Sort keys for the name order of the Space explorer: bytes that compare with
// memcmp (shorter first on a common prefix) exactly as NameOrder::compare
// compares the names themselves, so a long list is sorted on keys made once
// per name instead of collating both names in every comparison. Plain
// functions; any thread.

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

namespace NameKey {

// Appends the key of `name` to `out`: each character its rank in the
// collation (characters the collation holds equal, such as a letter and its
// capital, share a rank); a run of digits one token that orders by value
// (leading zeros ignored) and sits where digits sit among other characters.
// Only printable ASCII has such keys: false, with `out` in an unspecified
// state, for any other name, whose order only the collator knows (sort those
// on QCollator::sortKey).
bool append(QByteArray &out, QStringView name);
// The same for Latin-1 text.
bool append(QByteArray &out, QLatin1String name);

} // namespace NameKey
