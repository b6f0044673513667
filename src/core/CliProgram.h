// An executable's whole command line: its own options, its subcommands if it
// has any, and what its manual page says beyond them. A plain value.

#pragma once

#include "CliCommand.h"

struct CliProgram {
    // A term and what it means, for the manual's lists (exit statuses, files,
    // environment variables). The text is English, as the manual is.
    struct Entry {
        QString term;
        QString text;
    };

    const char *name = nullptr;    // "sorvel"
    const char *purpose = nullptr; // the manual's NAME line: "look at where disk space goes"
    QString version;
    CliCommand main;            // the options and arguments before (or without) a subcommand
    QList<CliCommand> commands; // sorted by name; empty for a program without subcommands
    QList<Entry> exitStatus;
    QList<Entry> environment;
    QList<Entry> files;
    QStringList seeAlso; // "sorvel-cleaner(1)"

    const CliCommand *command(QByteArrayView name) const
    {
        for (const CliCommand &c : commands)
            if (name == c.name)
                return &c;
        return nullptr;
    }
};
