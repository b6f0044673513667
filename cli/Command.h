#pragma once

#include "core/CliParser.h"
#include "core/CliProgram.h"

#include <QByteArrayList>
#include <QTextStream>

#include <functional>
#include <vector>

// A subcommand of the `sorvel` tool. Each command lives in its own file and
// registers itself with SORVEL_COMMAND, so adding one touches nothing else.
// Its CliCommand is the one description of its arguments and options: the help
// text, the manual page and the shell completions are written from it, and the
// tool parses the arguments by it before `run` sees them.
struct Command {
    const char *name;
    std::function<CliCommand()> describe;
    // The arguments after the command name, read by the table: paths keep any
    // byte the shell handed over.
    std::function<int(const CliParser &args)> run;
};

namespace Commands {

bool add(Command command);
const std::vector<Command> &all();
// The whole tool, its commands sorted by name.
CliProgram program();

// Standard streams shared by all commands.
QTextStream &out();
QTextStream &err();

// A mistake in the arguments: "sorvel NAME: message" and the usage line on
// standard error. Returns the status for it, 2.
int mistake(const CliCommand &command, const QString &message);

} // namespace Commands

#define SORVEL_COMMAND(id, name, describe, function)                                                                   \
    static const bool sorvelCommand_##id = Commands::add(Command{name, describe, function})
