#include "CliManPage.h"

namespace {

QString latin(const char *text) { return QString::fromLatin1(text); }
QString utf8(const char *text) { return QString::fromUtf8(text); }

QString bold(const QString &text) { return QLatin1String("\\fB") + CliManPage::escape(text) + QLatin1String("\\fR"); }
QString italic(const QString &text) { return QLatin1String("\\fI") + CliManPage::escape(text) + QLatin1String("\\fR"); }

QString argument(const CliArgument &a)
{
    QString text = italic(latin(a.name));
    if (a.repeatable)
        text += QLatin1String("\\&...");
    return a.optional ? QLatin1Char('[') + text + QLatin1Char(']') : text;
}

QString optionUsage(const CliOption &o)
{
    QString text = bold(latin(o.name));
    if (o.takesValue())
        text += QLatin1Char(' ') + italic(latin(o.value.name));
    return QLatin1Char('[') + text + QLatin1Char(']') + (o.repeatable ? QLatin1String("\\&...") : QLatin1String());
}

// One synopsis line, its continuation indented under the first.
QString synopsis(const CliProgram &program, const CliCommand &command, bool programLine)
{
    QStringList words{bold(latin(program.name))};
    if (programLine && !program.commands.isEmpty()) {
        words << italic(QStringLiteral("COMMAND")) << QStringLiteral("[") + italic(QStringLiteral("OPTIONS")) + ']';
    } else {
        if (command.name)
            words << bold(latin(command.name));
        for (const CliArgument &a : command.arguments)
            words << argument(a);
        for (const CliOption &o : command.options)
            if (!o.hidden)
                words << optionUsage(o);
    }
    return QLatin1String(".HP 4n\n") + words.join(QLatin1Char(' ')) + QLatin1Char('\n');
}

QString paragraph(const QString &text) { return QLatin1String(".PP\n") + CliManPage::escape(text) + QLatin1Char('\n'); }

QString choices(const CliArgument &value)
{
    if (value.kind != CliArgument::Kind::choice)
        return QString();
    QStringList each;
    for (const QString &c : value.choices)
        each << bold(c);
    return QLatin1Char(' ') + italic(latin(value.name)) + QLatin1String(" is one of: ") +
           each.join(QLatin1String(", ")) + QLatin1Char('.');
}

QString options(const CliCommand &command, bool withHelp)
{
    QString out;
    QList<CliOption> all = command.options;
    if (withHelp)
        all.prepend(CliOption::helpOption());
    for (const CliOption &o : all) {
        if (o.hidden)
            continue;
        out += QLatin1String(".TP\n");
        if (o.shortName)
            out += bold(latin(o.shortName)) + QLatin1String(", ");
        out += bold(latin(o.name));
        if (o.takesValue())
            out += QLatin1Char(' ') + italic(latin(o.value.name));
        out += QLatin1Char('\n') + CliManPage::escape(utf8(o.help)) + choices(o.value) + QLatin1Char('\n');
    }
    for (const CliArgument &a : command.arguments) {
        if (a.kind != CliArgument::Kind::choice)
            continue;
        out += QLatin1String(".TP\n") + italic(latin(a.name)) + QLatin1Char('\n') + QLatin1String("One of: ");
        QStringList each;
        for (const QString &c : a.choices)
            each << bold(c);
        out += each.join(QLatin1String(", ")) + QLatin1String(".\n");
    }
    return out;
}

QString entries(const char *heading, const QList<CliProgram::Entry> &list)
{
    if (list.isEmpty())
        return QString();
    QString out = QLatin1String(".SH ") + QLatin1String(heading) + QLatin1Char('\n');
    for (const CliProgram::Entry &e : list)
        out +=
            QLatin1String(".TP\n") + bold(e.term) + QLatin1Char('\n') + CliManPage::escape(e.text) + QLatin1Char('\n');
    return out;
}

} // namespace

namespace CliManPage {

QString escape(const QString &text)
{
    QString out;
    out.reserve(text.size() + 16);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == QLatin1Char('\\')) {
            out += QLatin1String("\\e");
        } else if (c == QLatin1Char('-')) {
            out += QLatin1String("\\-");
        } else if (c == QLatin1Char('\n')) {
            out += QLatin1Char(' ');
        } else if (c.unicode() < 0x20 || c.unicode() == 0x7f) {
            continue;
        } else if (c.unicode() < 0x80) {
            // A leading dot or quote would be read as a request.
            if ((c == QLatin1Char('.') || c == QLatin1Char('\'')) && (out.isEmpty() || out.endsWith(QLatin1Char('\n'))))
                out += QLatin1String("\\&");
            out += c;
        } else {
            char32_t code = c.unicode();
            if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
                code = QChar::surrogateToUcs4(c, text[++i]);
            out += QLatin1String("\\[u") +
                   QString::number(uint(code), 16).toUpper().rightJustified(4, QLatin1Char('0')) + QLatin1Char(']');
        }
    }
    return out;
}

QString write(const CliProgram &program)
{
    const QString name = latin(program.name);
    QString out = QLatin1String(".\\\" Written by ") + name + QLatin1String(" --help-man; do not edit.\n");
    out += QStringLiteral(".TH \"%1\" 1 \"\" \"%2 %3\" \"User Commands\"\n")
               .arg(name.toUpper(), escape(name), escape(program.version));
    out += QLatin1String(".SH NAME\n") + escape(name) + QLatin1String(" \\- ") + escape(utf8(program.purpose)) +
           QLatin1Char('\n');

    out += QLatin1String(".SH SYNOPSIS\n.nh\n.ad l\n");
    if (program.commands.isEmpty()) {
        out += synopsis(program, program.main, true);
    } else {
        for (const CliCommand &c : program.commands)
            out += synopsis(program, c, false);
        out += QLatin1String(".HP 4n\n") + bold(name) + QLatin1String(" [") + bold(QStringLiteral("--help")) +
               QLatin1String("] [") + bold(QStringLiteral("--version")) + QLatin1String("]\n");
    }
    out += QLatin1String(".ad\n.hy\n");

    out += QLatin1String(".SH DESCRIPTION\n");
    for (const char *p : program.main.description)
        out += paragraph(utf8(p));

    if (!program.commands.isEmpty()) {
        out += QLatin1String(".SH COMMANDS\n");
        for (const CliCommand &c : program.commands) {
            out += QLatin1String(".SS ") + bold(latin(c.name)) + QLatin1Char('\n');
            out += paragraph(utf8(c.summary));
            for (const char *p : c.description)
                out += paragraph(utf8(p));
            out += options(c, false);
        }
    }
    out += QLatin1String(".SH OPTIONS\n") + options(program.main, true);
    out += entries("EXIT STATUS", program.exitStatus);
    out += entries("ENVIRONMENT", program.environment);
    out += entries("FILES", program.files);
    if (!program.seeAlso.isEmpty()) {
        QStringList refs;
        for (const QString &ref : program.seeAlso) {
            const qsizetype open = ref.indexOf(QLatin1Char('('));
            refs << bold(ref.left(open)) + escape(ref.mid(open));
        }
        out += QLatin1String(".SH SEE ALSO\n") + refs.join(QLatin1String(",\n")) + QLatin1Char('\n');
    }
    return out;
}

} // namespace CliManPage
