// Reads a command line by its CliCommand: options long and short, "--name=value"
// and "--name value", "--" before arguments that begin with a dash, values from
// a fixed set. An option missing from the table is refused, and asking for an
// option the table does not name is a programming error: what is parsed is
// what is documented. Any thread.

#pragma once

#include "CliCommand.h"

#include <QByteArrayList>
#include <QHash>

class CliParser
{
public:
    explicit CliParser(CliCommand command);

    // Reads `args` (without the program and command names). False on a mistake,
    // which error() words for the user. Stops at -h/--help.
    bool parse(const QByteArrayList &args);

    const QString &error() const { return m_error; }
    bool helpRequested() const { return m_help; }

    // By the option's long name, as the table spells it.
    bool isSet(QByteArrayView name) const;
    QByteArray value(QByteArrayView name) const; // the last one given; null if none
    QByteArrayList values(QByteArrayView name) const;
    const QByteArrayList &positional() const { return m_positional; }

    const CliCommand &command() const { return m_command; }

private:
    const CliOption &known(QByteArrayView name) const;
    bool fail(const QString &message);

    CliCommand m_command;
    QHash<QByteArray, QByteArrayList> m_values; // by long name; flags hold empty values
    QByteArrayList m_positional;
    QString m_error;
    bool m_help = false;
};
