#include "core/CliHelp.h"
#include "core/CliManPage.h"
#include "core/Translations.h"

#include "Command.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>

namespace Commands {

namespace {
std::vector<Command> &registry()
{
    static std::vector<Command> commands;
    return commands;
}
} // namespace

bool add(Command command)
{
    registry().push_back(std::move(command));
    return true;
}

const std::vector<Command> &all() { return registry(); }

CliProgram program()
{
    CliProgram p;
    p.name = "sorvel";
    p.purpose = "look at where disk space goes, and clean it up, with the engine of Sorvel Cleaner";
    p.version = QStringLiteral(SORVEL_VERSION);
    p.main.description = {
        QT_TRANSLATE_NOOP("CommandLine", "Looks at where disk space goes, with the same engine as Sorvel Cleaner."),
        QT_TRANSLATE_NOOP("CommandLine",
                          "Each command walks, measures or removes on its own and prints a summary for people, or "
                          "with --json one JSON document for programs. Paths are taken byte for byte as the shell "
                          "hands them over; a relative path starts in the current folder."),
    };
    p.main.options = {
        {.name = "--version", .help = QT_TRANSLATE_NOOP("CommandLine", "Show the version.")},
        {.name = "--help-man", .help = "Print this manual page in roff.", .hidden = true},
    };
    for (const Command &c : all()) {
        p.commands << c.describe();
        Q_ASSERT(qstrcmp(p.commands.last().name, c.name) == 0);
    }
    std::sort(p.commands.begin(), p.commands.end(),
              [](const CliCommand &a, const CliCommand &b) { return qstrcmp(a.name, b.name) < 0; });
    p.exitStatus = {
        {QStringLiteral("0"), QStringLiteral("The command did all it was asked.")},
        {QStringLiteral("1"), QStringLiteral("Something could not be done: a path is missing or unreadable, an item "
                                             "stayed, or there was nothing to undo.")},
        {QStringLiteral("2"), QStringLiteral("A mistake in the arguments.")},
        {QStringLiteral("130"), QStringLiteral("Stopped with Ctrl-C.")},
    };
    p.environment = {
        {QStringLiteral("HOME"), QStringLiteral("The home folder: the Trash, the caches and the protected personal "
                                                "folders are found from it.")},
        {QStringLiteral("XDG_DATA_HOME"), QStringLiteral("Holds the home Trash (default ~/.local/share).")},
        {QStringLiteral("XDG_CACHE_HOME"), QStringLiteral("The app caches that junk measures (default ~/.cache).")},
        {QStringLiteral("XDG_CONFIG_HOME"),
         QStringLiteral("Holds user-dirs.dirs, which names the download folder (default ~/.config).")},
        {QStringLiteral("XDG_STATE_HOME"), QStringLiteral("Holds the removal journal (default ~/.local/state).")},
    };
    p.files = {
        {QStringLiteral("$XDG_STATE_HOME/sorvel-cleaner/removals"),
         QStringLiteral("The removal journal: one file per removal to the Trash, read by undo.")},
        {QStringLiteral("$XDG_DATA_HOME/Trash"),
         QStringLiteral("The home Trash; on other volumes, .Trash-UID or .Trash/UID at their top.")},
    };
    p.seeAlso = {QStringLiteral("sorvel-cleaner(1)")};
    return p;
}

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

QTextStream &err()
{
    static QTextStream stream(stderr);
    return stream;
}

int mistake(const CliCommand &command, const QString &message)
{
    err() << "sorvel " << command.name << ": " << message << '\n' << CliHelp::usageLine(program(), command) << Qt::endl;
    return 2;
}

} // namespace Commands

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    Translations::install();
    QCoreApplication::setOrganizationName(QStringLiteral("Sorvel"));
    QCoreApplication::setApplicationName(QStringLiteral("Sorvel Cleaner"));

    QByteArrayList args;
    for (int i = 1; i < argc; ++i)
        args.append(QByteArray(argv[i]));
    const CliProgram program = Commands::program();
    if (args.isEmpty()) {
        Commands::err() << CliHelp::program(program) << Qt::flush;
        return 2;
    }
    const QByteArray name = args.first();
    if (name == "-h" || name == "--help") {
        Commands::out() << CliHelp::program(program) << Qt::flush;
        return 0;
    }
    if (name == "--version") {
        Commands::out() << "sorvel " << SORVEL_VERSION << Qt::endl;
        return 0;
    }
    if (name == "--help-man") {
        Commands::out() << CliManPage::write(program) << Qt::flush;
        return 0;
    }
    for (const Command &command : Commands::all()) {
        if (name != command.name)
            continue;
        const CliCommand described = command.describe();
        CliParser parser(described);
        if (!parser.parse(args.mid(1)))
            return Commands::mistake(described, parser.error());
        if (parser.helpRequested()) {
            Commands::out() << CliHelp::command(program, described) << Qt::flush;
            return 0;
        }
        const int status = command.run(parser);
        Commands::out().flush();
        Commands::err().flush();
        return status;
    }
    Commands::err() << "sorvel: "
                    << QCoreApplication::translate("CliHelp", "unknown command '%1'. See 'sorvel --help'.")
                           .arg(QString::fromLocal8Bit(name))
                    << Qt::endl;
    return 2;
}
