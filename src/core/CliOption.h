// One option of a command line, as a usage text, a manual page and a shell's
// completion describe it and as CliParser accepts it. A plain value.

#pragma once

#include "CliArgument.h"

#include <QtGlobal>

struct CliOption {
    const char *name = nullptr;      // as typed: "--min-size", "-scan"
    const char *shortName = nullptr; // "-h", if any
    CliArgument value = {};          // unnamed: the option takes no value
    // One line, the English text and its translation key in the context
    // "CommandLine".
    const char *help = nullptr;
    bool repeatable = false;
    bool hidden = false; // accepted, but neither documented nor completed

    bool takesValue() const { return value.isNamed(); }
    // "-h, --help" or "--min-size BYTES".
    QString spelling() const
    {
        QString text = shortName ? QString::fromLatin1(shortName) + QLatin1String(", ") : QString();
        text += QString::fromLatin1(name);
        if (takesValue())
            text += QLatin1Char(' ') + QString::fromLatin1(value.name);
        return text;
    }
    // As a usage line shows it: "[--exclude PATH]...".
    QString usage() const
    {
        QString text = QString::fromLatin1(name);
        if (takesValue())
            text += QLatin1Char(' ') + QString::fromLatin1(value.name);
        return QLatin1Char('[') + text + QLatin1Char(']') + (repeatable ? QLatin1String("...") : QLatin1String());
    }

    // The option every command takes.
    static CliOption helpOption()
    {
        return {.name = "--help", .shortName = "-h", .help = QT_TRANSLATE_NOOP("CommandLine", "Show this text.")};
    }
};
