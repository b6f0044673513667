// The bundled translation tables: the English plural forms, and on Linux the
// wording for texts that name Apple software. The English source texts stay in
// the code and remain the keys. Installed on the main thread, right after the
// application starts.

#pragma once

#include "Platform.h"

class QTranslator;

// Count texts carry their English plural as the source ("%Ln files"); the
// English table gives the other forms ("1 file") and is installed on every
// platform. On Linux the platform wording goes on top of it: "Part of macOS,
// never touched" reads "Part of the system, never touched". A text the Linux
// table lacks falls through to the English one.
namespace Translations {

// Installs the tables of `platform` into the application; call right after the
// application object is made. The English table is installed once and stays
// for the application's life. Returns the platform wording's translator (owned
// by the application), or null when there is none for the platform or it
// can't load.
QTranslator *install(Platform platform = Platform::current());

} // namespace Translations
