// Shell completion scripts for bash, zsh and fish, written from a CliProgram:
// subcommands, options, the values of options with a fixed set of them, and
// files or folders where a path goes. Any thread.

#pragma once

#include "CliProgram.h"

namespace CliCompletion {

// The shells there are scripts for: "bash", "zsh", "fish".
QStringList shells();
// The script for `shell`; null for a shell not in shells().
QString script(const CliProgram &program, QStringView shell);

QString bash(const CliProgram &program);
QString zsh(const CliProgram &program);
QString fish(const CliProgram &program);

} // namespace CliCompletion
