// `sorvel help [COMMAND]`: the tool's help, or one command's, as --help gives it.

#include "Command.h"

#include "core/CliHelp.h"

namespace {

CliCommand describe()
{
    QStringList names;
    for (const Command &c : Commands::all())
        names << QString::fromLatin1(c.name);
    names.sort();
    return {.name = "help",
            .summary = QT_TRANSLATE_NOOP("CommandLine", "Show this text, or what one command takes."),
            .arguments = {{.name = "COMMAND", .kind = CliArgument::Kind::choice, .choices = names, .optional = true}}};
}

int help(const CliParser &args)
{
    const CliProgram program = Commands::program();
    if (args.positional().isEmpty()) {
        Commands::out() << CliHelp::program(program);
        return 0;
    }
    const CliCommand *command = program.command(args.positional().first());
    Commands::out() << CliHelp::command(program, *command);
    return 0;
}

} // namespace

SORVEL_COMMAND(help, "help", describe, help);
