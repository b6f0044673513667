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

} // namespace Commands

namespace {

void printUsage(QTextStream &stream)
{
    stream << "Usage: sorvel COMMAND [OPTIONS]\n\n"
              "Looks at where disk space goes, with the same engine as Sorvel Cleaner.\n\n"
              "Commands:\n";
    std::vector<Command> commands = Commands::all();
    std::sort(commands.begin(), commands.end(),
              [](const Command &a, const Command &b) { return qstrcmp(a.name, b.name) < 0; });
    for (const Command &c : commands)
        stream << "  " << QString::fromUtf8(c.synopsis) << '\n';
    stream << "  help\n      Show this text.\n\n"
              "Options:\n"
              "  -h, --help   Show this text.\n"
              "  --version    Show the version.\n";
    stream.flush();
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    Translations::install();
    QCoreApplication::setOrganizationName(QStringLiteral("Sorvel"));
    QCoreApplication::setApplicationName(QStringLiteral("Sorvel Cleaner"));

    QByteArrayList args;
    for (int i = 1; i < argc; ++i)
        args.append(QByteArray(argv[i]));
    if (args.isEmpty()) {
        printUsage(Commands::err());
        return 2;
    }
    const QByteArray name = args.first();
    if (name == "-h" || name == "--help" || name == "help") {
        printUsage(Commands::out());
        return 0;
    }
    if (name == "--version") {
        Commands::out() << "sorvel " << SORVEL_VERSION << Qt::endl;
        return 0;
    }
    for (const Command &command : Commands::all()) {
        if (name == command.name) {
            const int status = command.run(args.mid(1));
            Commands::out().flush();
            Commands::err().flush();
            return status;
        }
    }
    Commands::err() << "sorvel: unknown command '" << QString::fromLocal8Bit(name) << "'. See 'sorvel --help'."
                    << Qt::endl;
    return 2;
}
