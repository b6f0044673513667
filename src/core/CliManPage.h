// A CliProgram as a manual page in roff (man macros), in English: NAME,
// SYNOPSIS, DESCRIPTION, COMMANDS or OPTIONS, EXIT STATUS, ENVIRONMENT, FILES,
// SEE ALSO. Any thread.

#pragma once

#include "CliProgram.h"

namespace CliManPage {

QString write(const CliProgram &program);

// `text` safe in roff: backslashes and dashes escaped, characters beyond
// ASCII as \[uXXXX], and a line start that roff would read as a request
// guarded.
QString escape(const QString &text);

} // namespace CliManPage
