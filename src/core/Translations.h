// The bundled translation tables. On Linux, texts that name Apple software read
// in Linux wording; the English source texts stay in the code and remain the
// keys. Installed once, on the main thread, right after the application starts.

#pragma once

#include "Platform.h"

class QTranslator;

// "Part of macOS, never touched" reads "Part of the system, never touched" on
// Linux. Nothing is installed for the macOS profile.
namespace Translations {

// Installs the tables of `platform` into the application; call right after the
// application object is made. Returns the translator (owned by the
// application), or null when there is none for the platform or it can't load.
QTranslator *install(Platform platform = Platform::current());

} // namespace Translations
