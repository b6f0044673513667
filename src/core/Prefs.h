// The application's preferences: one QSettings store (organisation "Sorvel",
// application "Sorvel Cleaner"), read and written on the main thread. Defaults
// are registered in memory and never written, so a key the user never changed
// stays absent from the store.

#pragma once

#include <QAnyStringView>
#include <QString>
#include <QStringList>
#include <QVariant>

// A list is one text whose entries are joined by a line feed, without escaping:
// an entry that holds a line feed cannot be stored and is left out on writing.
namespace Prefs {

// The keys the application stores.
inline constexpr char minTrackedSize[] = "minTrackedSize";
inline constexpr char treatPackagesAsFiles[] = "treatPackagesAsFiles";
inline constexpr char skipHiddenFiles[] = "skipHiddenFiles";
inline constexpr char excludedPaths[] = "excludedPaths";
inline constexpr char showMenuBarExtra[] = "showMenuBarExtra";
inline constexpr char recentTargets[] = "recentTargets";
inline constexpr char spaceLayout[] = "spaceLayout";

// Registers the defaults of the first six keys above, in memory. Must run before
// the first read of any of them; a read before gives 0, false or empty.
void registerDefaults();

// The stored value, else the registered default, else an invalid QVariant.
QVariant value(QAnyStringView key);
// An integer; a stored value that is no integer reads as the registered default.
qint64 integer(QAnyStringView key);
// A truth value; "true"/"false", "1"/"0", "yes"/"no" are understood, anything
// else reads as the registered default.
bool boolean(QAnyStringView key);
QString text(QAnyStringView key);
// The entries of a list key in stored order; empty pieces are left out, a
// missing value is an empty list.
QStringList list(QAnyStringView key);

void setValue(QAnyStringView key, const QVariant &value);
void setList(QAnyStringView key, const QStringList &entries);
// Removes the user's value, so the default shows through again.
void remove(QAnyStringView key);

// Points the store at an INI file instead of the user's own settings; an empty
// path returns to the user's store. For tests and tools.
void useFile(const QString &path);

} // namespace Prefs
