// `sorvel completion SHELL`: the completion script for bash, zsh or fish,
// written from the same tables as the help and the manual page.

#include "Command.h"

#include "core/CliCompletion.h"

#include <QCoreApplication>

namespace {

CliCommand describe()
{
    return {.name = "completion",
            .summary = QT_TRANSLATE_NOOP("CommandLine", "Print the completion script of a shell for this tool."),
            .arguments = {{.name = "SHELL", .kind = CliArgument::Kind::choice, .choices = CliCompletion::shells()}},
            .description = {QT_TRANSLATE_NOOP(
                "CommandLine",
                "Prints the script that completes this tool's commands, options and paths in SHELL. To try it in "
                "the running shell: 'source <(sorvel completion bash)' in bash or zsh, 'sorvel completion fish | "
                "source' in fish. Installed, the scripts are already where each shell looks for them.")}};
}

int completion(const CliParser &args)
{
    if (args.positional().isEmpty())
        return Commands::mistake(args.command(), QCoreApplication::translate("CompletionCommand", "which shell? "
                                                                                                  "Give bash, zsh "
                                                                                                  "or fish"));
    Commands::out() << CliCompletion::script(Commands::program(), QString::fromLatin1(args.positional().first()));
    return 0;
}

} // namespace

SORVEL_COMMAND(completion, "completion", describe, completion);
