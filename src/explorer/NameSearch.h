// The search of the Space explorer: a name matches when it holds the typed
// text with case folded and canonical equivalents equal, so a decomposed "é"
// (e and a combining accent) finds the composed one and the other way round.
// Plain functions; any thread.

#pragma once

#include <QString>

namespace NameSearch {

// The form both sides are compared in: NFC, case-folded, NFC again. ASCII
// text is its own form (the comparison folds its case).
QString canonical(const QString &text);

// True when `name` contains `search` in that form; an empty search matches.
bool contains(const QString &name, const QString &search);

} // namespace NameSearch
