// What one command line takes: a subcommand of a tool, or a program's own
// arguments. The usage text, the manual page, the shell completions and the
// parser are all read from it, so none can say what another does not.
// A plain value.

#pragma once

#include "CliOption.h"

#include <QByteArrayView>
#include <QList>

struct CliCommand {
    const char *name = nullptr;        // "scan"; none for a program's own line
    const char *summary = nullptr;     // one line for the list of commands
    QList<CliArgument> arguments = {}; // positional, in order
    QList<CliOption> options = {};     // -h/--help comes with every command and is not listed
    // Paragraphs of plain text, each the English text and its translation key
    // in the context "CommandLine".
    QList<const char *> description = {};

    // The option spelled `spelling` (long or short), the help option included;
    // null when there is none.
    const CliOption *option(QByteArrayView spelling) const;
    // "scan PATH [--min-size BYTES] ...", after `program` ("sorvel scan ...").
    QString usage(const QString &program) const;
};
