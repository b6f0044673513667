// The texts -h/--help prints, and the usage line after a mistake, worded from
// a CliProgram in the user's language. Any thread.

#pragma once

#include "CliProgram.h"

namespace CliHelp {

// The whole program: usage, description, commands (or arguments) and options.
QString program(const CliProgram &program);
// One subcommand: its usage, description, arguments and options.
QString command(const CliProgram &program, const CliCommand &command);
// "Usage: sorvel scan PATH [--min-size BYTES] ...", for after a mistake.
QString usageLine(const CliProgram &program, const CliCommand &command);

// `text` broken into lines of at most `width` columns, each after `indent`
// spaces; words longer than a line stay whole.
QString wrap(const QString &text, int indent, int width = 80);

} // namespace CliHelp
