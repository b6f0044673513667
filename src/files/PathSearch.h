// The search of the Files shelves: the text as typed, found anywhere in a path
// as people read it, case ignored. Plain function; any thread.

#pragma once

#include <QByteArrayView>
#include <QString>

namespace PathSearch {

// True for an empty search. The whole path is searched, so a folder's name
// finds every file in it.
bool matches(QByteArrayView path, const QString &search);

} // namespace PathSearch
