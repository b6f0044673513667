// A value on a command line, a positional argument or the value an option
// takes: its name in usage texts, and what a shell offers to complete it.
// A plain value, usable on any thread.

#pragma once

#include <QString>
#include <QStringList>

struct CliArgument {
    enum class Kind : quint8 {
        text,   // anything; nothing to offer
        path,   // a file or a folder
        folder, // a folder
        choice, // one of `choices`
    };

    const char *name = nullptr; // "PATH", "BYTES"; none for an option that takes no value
    Kind kind = Kind::text;
    QStringList choices = {};
    bool repeatable = false; // a positional argument that may come several times
    bool optional = false;   // a positional argument that may be left out

    bool isNamed() const { return name != nullptr; }
    // As a usage text shows it: "PATH", "PATH...", "[COMMAND]".
    QString usage() const
    {
        QString text = QString::fromLatin1(name);
        if (repeatable)
            text += QLatin1String("...");
        return optional ? QLatin1Char('[') + text + QLatin1Char(']') : text;
    }
};
