#include "CliCompletion.h"

#include <QCoreApplication>

namespace {

QString latin(const char *text) { return QString::fromLatin1(text); }
QString table(const char *text) { return text ? QCoreApplication::translate("CommandLine", text) : QString(); }

QList<CliOption> shownOptions(const CliCommand &command)
{
    QList<CliOption> out{CliOption::helpOption()};
    for (const CliOption &o : command.options)
        if (!o.hidden)
            out << o;
    return out;
}

// A shell function name from the program's: "sorvel-cleaner" gives "_sorvel_cleaner".
QString function(const CliProgram &program) { return QLatin1Char('_') + latin(program.name).replace('-', '_'); }

// A word as one single-quoted POSIX shell word.
QString quoted(const QString &text)
{
    return QLatin1Char('\'') + QString(text).replace(QLatin1String("'"), QLatin1String("'\\''")) + QLatin1Char('\'');
}

// ---- bash -----------------------------------------------------------------------

// Fills COMPREPLY for a value of the given kind.
QString bashValue(const CliArgument &value, const QString &indent, const QString &f)
{
    switch (value.kind) {
    case CliArgument::Kind::path:
        return indent + f + QLatin1String("_files -f\n");
    case CliArgument::Kind::folder:
        return indent + f + QLatin1String("_files -d\n");
    case CliArgument::Kind::choice:
        return indent + f + QLatin1String("_words ") + quoted(value.choices.join(QLatin1Char(' '))) + QLatin1Char('\n');
    case CliArgument::Kind::text:
        break;
    }
    return indent + QLatin1String(":\n");
}

// The completion of one command line's words after its name.
QString bashCommand(const CliCommand &command, const QString &indent, const QString &commands, const QString &f)
{
    QString out;
    const QList<CliOption> options = shownOptions(command);
    bool anyValue = false;
    for (const CliOption &o : options)
        anyValue = anyValue || o.takesValue();
    if (anyValue) {
        out += indent + QLatin1String("case $prev in\n");
        for (const CliOption &o : options) {
            if (!o.takesValue())
                continue;
            out += indent + QLatin1String("    ") + (o.shortName ? latin(o.shortName) + QLatin1Char('|') : QString()) +
                   latin(o.name) + QLatin1String(")\n");
            out += bashValue(o.value, indent + QLatin1String("        "), f);
            out += indent + QLatin1String("        return ;;\n");
        }
        out += indent + QLatin1String("esac\n");
    }
    QStringList spellings;
    for (const CliOption &o : options) {
        if (o.shortName)
            spellings << latin(o.shortName);
        spellings << latin(o.name);
    }
    out += indent + QLatin1String("if [[ $cur == -* ]]; then\n");
    out += indent + QLatin1String("    ") + f + QLatin1String("_words ") + quoted(spellings.join(QLatin1Char(' '))) +
           QLatin1Char('\n');
    out += indent + QLatin1String("    return\n") + indent + QLatin1String("fi\n");
    if (!commands.isEmpty())
        out += indent + f + QLatin1String("_words ") + quoted(commands) + QLatin1Char('\n');
    else if (!command.arguments.isEmpty())
        out += bashValue(command.arguments.first(), indent, f);
    return out;
}

} // namespace

namespace CliCompletion {

QStringList shells() { return {QStringLiteral("bash"), QStringLiteral("zsh"), QStringLiteral("fish")}; }

QString script(const CliProgram &program, QStringView shell)
{
    if (shell == QLatin1String("bash"))
        return bash(program);
    if (shell == QLatin1String("zsh"))
        return zsh(program);
    if (shell == QLatin1String("fish"))
        return fish(program);
    return QString();
}

QString bash(const CliProgram &program)
{
    const QString name = latin(program.name);
    const QString f = function(program);
    QStringList commandNames;
    for (const CliCommand &c : program.commands)
        commandNames << latin(c.name);

    QString out = QStringLiteral("# bash completion for %1, written by '%1' from its own command line.\n").arg(name);
    // The helpers read `cur` from the completion function that calls them.
    out += f + QLatin1String("_words()\n{\n    mapfile -t COMPREPLY < <(compgen -W \"$1\" -- \"$cur\")\n}\n");
    out += f + QLatin1String("_files()\n{\n    mapfile -t COMPREPLY < <(compgen \"$1\" -- \"$cur\")\n"
                             "    compopt -o filenames 2>/dev/null || :\n}\n");
    out += f + QLatin1String("()\n{\n");
    out += QLatin1String("    local cur=${COMP_WORDS[COMP_CWORD]} prev= command= i\n"
                         "    (( COMP_CWORD > 0 )) && prev=${COMP_WORDS[COMP_CWORD-1]}\n"
                         "    # With '=' among the word breaks, --name=value arrives as three words.\n"
                         "    if [[ $cur == = ]]; then\n"
                         "        cur=\n"
                         "    elif [[ $prev == = ]] && (( COMP_CWORD > 1 )); then\n"
                         "        prev=${COMP_WORDS[COMP_CWORD-2]}\n"
                         "    fi\n"
                         "    COMPREPLY=()\n");
    if (program.commands.isEmpty()) {
        out += bashCommand(program.main, QStringLiteral("    "), QString(), f);
    } else {
        out += QLatin1String("    for (( i = 1; i < COMP_CWORD; i++ )); do\n"
                             "        case ${COMP_WORDS[i]} in\n"
                             "            -*) ;;\n"
                             "            *) command=${COMP_WORDS[i]}; break ;;\n"
                             "        esac\n"
                             "    done\n"
                             "    case $command in\n"
                             "        '')\n");
        out += bashCommand(program.main, QStringLiteral("            "), commandNames.join(QLatin1Char(' ')), f);
        out += QLatin1String("            ;;\n");
        for (const CliCommand &c : program.commands) {
            out += QLatin1String("        ") + latin(c.name) + QLatin1String(")\n");
            out += bashCommand(c, QStringLiteral("            "), QString(), f);
            out += QLatin1String("            ;;\n");
        }
        out += QLatin1String("    esac\n");
    }
    out += QLatin1String("}\ncomplete -F ") + f + QLatin1Char(' ') + name + QLatin1Char('\n');
    return out;
}

} // namespace CliCompletion

namespace {

// ---- zsh ------------------------------------------------------------------------

// A description inside an _arguments or _describe spec.
QString zshText(const QString &text)
{
    QString out;
    for (const QChar c : text) {
        if (c == QLatin1Char('\\') || c == QLatin1Char('[') || c == QLatin1Char(']') || c == QLatin1Char(':'))
            out += QLatin1Char('\\');
        out += c == QLatin1Char('\n') ? QLatin1Char(' ') : c;
    }
    return out;
}

QString zshAction(const CliArgument &value)
{
    switch (value.kind) {
    case CliArgument::Kind::path:
        return QStringLiteral("_files");
    case CliArgument::Kind::folder:
        return QStringLiteral("_files -/");
    case CliArgument::Kind::choice:
        return QLatin1Char('(') + value.choices.join(QLatin1Char(' ')) + QLatin1Char(')');
    case CliArgument::Kind::text:
        break;
    }
    return QStringLiteral(" ");
}

// The _arguments specs of a command line, one quoted word each.
QStringList zshSpecs(const CliCommand &command)
{
    QStringList specs;
    for (const CliOption &o : shownOptions(command)) {
        const bool help = qstrcmp(o.name, "--help") == 0;
        QString exclusion;
        if (help)
            exclusion = QStringLiteral("(- *)");
        else if (o.shortName)
            exclusion = QStringLiteral("(%1 %2)").arg(latin(o.shortName), latin(o.name));
        QString value;
        if (o.takesValue())
            value = QLatin1Char(':') + zshText(latin(o.value.name)) + QLatin1Char(':') + zshAction(o.value);
        const QString describe = QLatin1Char('[') + zshText(table(o.help)) + QLatin1Char(']');
        QStringList names{latin(o.name)};
        if (o.shortName)
            names.prepend(latin(o.shortName));
        for (const QString &n : names) {
            // "--name=" takes its value after "=" or as the next word.
            const QString spelling =
                n + (o.takesValue() && n.startsWith(QLatin1String("--")) ? QStringLiteral("=") : QString());
            specs << quoted((o.repeatable ? QStringLiteral("*") : exclusion) + spelling + describe + value);
        }
    }
    for (const CliArgument &a : command.arguments) {
        const QString lead = a.repeatable ? QStringLiteral("*:")
                             : a.optional ? QStringLiteral("::")
                                          : QStringLiteral(":");
        specs << quoted(lead + zshText(latin(a.name)) + QLatin1Char(':') + zshAction(a));
    }
    return specs;
}

QString zshArguments(const QStringList &specs, const QString &indent, const QString &flags)
{
    QString out = indent + QLatin1String("_arguments") + flags;
    for (const QString &s : specs)
        out += QLatin1String(" \\\n") + indent + QLatin1String("    ") + s;
    return out;
}

// ---- fish -----------------------------------------------------------------------

QString fishQuoted(const QString &text)
{
    QString out = text;
    out.replace(QLatin1String("\\"), QLatin1String("\\\\")).replace(QLatin1String("'"), QLatin1String("\\'"));
    out.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return QLatin1Char('\'') + out + QLatin1Char('\'');
}

QString fishValue(const CliArgument &value, bool option)
{
    switch (value.kind) {
    case CliArgument::Kind::path:
        return option ? QStringLiteral(" -r -F") : QStringLiteral(" -F");
    case CliArgument::Kind::folder:
        return (option ? QStringLiteral(" -x") : QString()) + QLatin1String(" -a '(__fish_complete_directories)'");
    case CliArgument::Kind::choice:
        return (option ? QStringLiteral(" -x") : QString()) + QLatin1String(" -a ") +
               fishQuoted(value.choices.join(QLatin1Char(' ')));
    case CliArgument::Kind::text:
        break;
    }
    return option ? QStringLiteral(" -x") : QString();
}

QString fishCommand(const QString &head, const CliCommand &command)
{
    QString out;
    for (const CliOption &o : shownOptions(command)) {
        out += head;
        if (o.shortName)
            out += QLatin1String(" -s ") + latin(o.shortName).mid(1);
        const QString name = latin(o.name);
        out += name.startsWith(QLatin1String("--")) ? QLatin1String(" -l ") + name.mid(2)
                                                    : QLatin1String(" -o ") + name.mid(1);
        if (o.takesValue())
            out += fishValue(o.value, true);
        out += QLatin1String(" -d ") + fishQuoted(table(o.help)) + QLatin1Char('\n');
    }
    if (!command.arguments.isEmpty() && command.arguments.first().kind != CliArgument::Kind::text)
        out += head + fishValue(command.arguments.first(), false) + QLatin1Char('\n');
    return out;
}

} // namespace

namespace CliCompletion {

QString zsh(const CliProgram &program)
{
    const QString name = latin(program.name);
    const QString f = function(program);
    QString out = QStringLiteral("#compdef %1\n# zsh completion for %1, written by '%1' from its own command line.\n\n")
                      .arg(name);
    out += f + QLatin1String("()\n{\n");
    if (program.commands.isEmpty()) {
        out += zshArguments(zshSpecs(program.main), QStringLiteral("    "), QStringLiteral(" -S")) + QLatin1Char('\n');
    } else {
        out += QLatin1String("    local curcontext=$curcontext state state_descr line ret=1\n"
                             "    typeset -A opt_args\n");
        QStringList specs = zshSpecs(program.main);
        specs << quoted(QStringLiteral(":command:->command")) << quoted(QStringLiteral("*:: :->argument"));
        out += zshArguments(specs, QStringLiteral("    "), QStringLiteral(" -C")) + QLatin1String(" && ret=0\n");
        out += QLatin1String("    case $state in\n"
                             "        command)\n"
                             "            local -a commands=(\n");
        for (const CliCommand &c : program.commands)
            out += QLatin1String("                ") +
                   quoted(zshText(latin(c.name)) + QLatin1Char(':') + table(c.summary).replace('\n', ' ')) +
                   QLatin1Char('\n');
        out += QLatin1String("            )\n"
                             "            _describe -t commands command commands && ret=0\n"
                             "            ;;\n"
                             "        argument)\n");
        out += QStringLiteral("            curcontext=${curcontext%:*:*}:%1-$words[1]:\n").arg(name);
        out += QLatin1String("            case $words[1] in\n");
        for (const CliCommand &c : program.commands) {
            out += QLatin1String("                ") + latin(c.name) + QLatin1String(")\n");
            out += zshArguments(zshSpecs(c), QStringLiteral("                    "), QStringLiteral(" -S")) +
                   QLatin1String(" && ret=0\n");
            out += QLatin1String("                    ;;\n");
        }
        out += QLatin1String("            esac\n"
                             "            ;;\n"
                             "    esac\n"
                             "    return ret\n");
    }
    out += QLatin1String("}\n\n");
    // Autoloaded from $fpath the file is the function's body; sourced, it registers.
    out += QStringLiteral("if [[ ${funcstack[1]-} == %1 ]]; then\n    %1 \"$@\"\nelse\n    compdef %1 %2\nfi\n")
               .arg(f, name);
    return out;
}

QString fish(const CliProgram &program)
{
    const QString name = latin(program.name);
    QString out = QStringLiteral("# fish completion for %1, written by '%1' from its own command line.\n").arg(name);
    out += QLatin1String("complete -c ") + name + QLatin1String(" -f\n");
    if (program.commands.isEmpty())
        return out + fishCommand(QLatin1String("complete -c ") + name, program.main);
    out += fishCommand(QLatin1String("complete -c ") + name + QLatin1String(" -n __fish_use_subcommand"), program.main);
    for (const CliCommand &c : program.commands)
        out += QLatin1String("complete -c ") + name + QLatin1String(" -n __fish_use_subcommand -a ") + latin(c.name) +
               QLatin1String(" -d ") + fishQuoted(table(c.summary)) + QLatin1Char('\n');
    for (const CliCommand &c : program.commands)
        out += fishCommand(QLatin1String("complete -c ") + name + QLatin1String(" -n '__fish_seen_subcommand_from ") +
                               latin(c.name) + QLatin1Char('\''),
                           c);
    return out;
}

} // namespace CliCompletion
