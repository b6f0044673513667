#include "CliHelp.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

QString tr(const char *text) { return QCoreApplication::translate("CliHelp", text); }
// The tables' texts live in one context.
QString table(const char *text) { return text ? QCoreApplication::translate("CommandLine", text) : QString(); }

constexpr int widest = 24; // a term wider than this puts its text on the next line

QString usageText(const CliProgram &program, const CliCommand &command)
{
    const QString name = QString::fromLatin1(program.name);
    if (&command == &program.main && !program.commands.isEmpty())
        return name + QLatin1String(" COMMAND [OPTIONS]");
    return command.usage(name);
}

// A line "  term  text", the text wrapped in its column.
void term(QString &out, const QString &term, const QString &text, int column)
{
    out += QLatin1String("  ") + term;
    if (term.size() + 4 > column) {
        out += QLatin1Char('\n') + CliHelp::wrap(text, column);
        return;
    }
    out += QString(column - 2 - term.size(), QLatin1Char(' ')) + CliHelp::wrap(text, column).mid(column);
}

QString withChoices(const QString &text, const CliArgument &value)
{
    if (value.kind != CliArgument::Kind::choice)
        return text;
    return (text.isEmpty() ? text : text + QLatin1Char(' ')) +
           tr("%1 is one of: %2.").arg(QString::fromLatin1(value.name), value.choices.join(QLatin1String(", ")));
}

void options(QString &out, const CliCommand &command, const QList<CliOption> &extra)
{
    QList<CliOption> shown;
    for (const CliOption &o : command.options + extra)
        if (!o.hidden)
            shown << o;
    if (shown.isEmpty())
        return;
    int column = 0;
    for (const CliOption &o : shown)
        column = std::max(column, int(o.spelling().size()) + 4);
    column = std::min(column, widest + 4);
    out += QLatin1Char('\n') + tr("Options:") + QLatin1Char('\n');
    for (const CliOption &o : shown)
        term(out, o.spelling(), withChoices(table(o.help), o.value), column);
}

void arguments(QString &out, const CliCommand &command)
{
    QList<CliArgument> shown;
    int column = 0;
    for (const CliArgument &a : command.arguments) {
        if (a.kind == CliArgument::Kind::choice) {
            shown << a;
            column = std::min(std::max(column, int(qstrlen(a.name)) + 4), widest + 4);
        }
    }
    if (shown.isEmpty())
        return;
    out += QLatin1Char('\n') + tr("Arguments:") + QLatin1Char('\n');
    for (const CliArgument &a : shown)
        term(out, QString::fromLatin1(a.name), tr("One of: %1.").arg(a.choices.join(QLatin1String(", "))), column);
}

void description(QString &out, const CliCommand &command)
{
    for (const char *paragraph : command.description)
        out += QLatin1Char('\n') + CliHelp::wrap(table(paragraph), 0);
}

} // namespace

namespace CliHelp {

QString wrap(const QString &text, int indent, int width)
{
    const QString margin(indent, QLatin1Char(' '));
    QString out;
    QString line = margin;
    bool empty = true;
    for (const QString &word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        if (!empty && line.size() + 1 + word.size() > width) {
            out += line + QLatin1Char('\n');
            line = margin;
            empty = true;
        }
        line += (empty ? QString() : QStringLiteral(" ")) + word;
        empty = false;
    }
    return out + line + QLatin1Char('\n');
}

QString usageLine(const CliProgram &program, const CliCommand &command)
{
    return tr("Usage: %1").arg(usageText(program, command));
}

QString program(const CliProgram &program)
{
    QString out = usageLine(program, program.main) + QLatin1Char('\n');
    description(out, program.main);
    if (!program.commands.isEmpty()) {
        out += QLatin1Char('\n') + tr("Commands:") + QLatin1Char('\n');
        for (const CliCommand &c : program.commands)
            out += QLatin1String("  ") + c.usage(QString()).mid(1) + QLatin1Char('\n') + wrap(table(c.summary), 6);
    }
    arguments(out, program.main);
    options(out, program.main, {CliOption::helpOption()});
    if (!program.commands.isEmpty())
        out += QLatin1Char('\n') +
               tr("Run '%1 help COMMAND' for what a command's options do.").arg(QString::fromLatin1(program.name)) +
               QLatin1Char('\n');
    return out;
}

QString command(const CliProgram &program, const CliCommand &command)
{
    QString out = usageLine(program, command) + QLatin1Char('\n');
    description(out, command);
    arguments(out, command);
    options(out, command, {CliOption::helpOption()});
    return out;
}

} // namespace CliHelp
