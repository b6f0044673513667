#pragma once

#include <QByteArrayList>
#include <QTextStream>

#include <functional>
#include <vector>

// A subcommand of the `sorvel` tool. Each command lives in its own file and
// registers itself with SORVEL_COMMAND, so adding one touches nothing else.
struct Command {
    const char *name;
    const char *synopsis; // one line for the usage text
    // The arguments after the command name, as the raw bytes of argv: paths keep
    // any byte the shell handed over.
    std::function<int(const QByteArrayList &args)> run;
};

namespace Commands {

bool add(Command command);
const std::vector<Command> &all();

// Standard streams shared by all commands.
QTextStream &out();
QTextStream &err();

} // namespace Commands

#define SORVEL_COMMAND(id, name, synopsis, function)                                                                   \
    static const bool sorvelCommand_##id = Commands::add(Command{name, synopsis, function})
