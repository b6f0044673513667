#include "LaunchUsage.h"

#include "core/CliCompletion.h"
#include "core/CliHelp.h"
#include "core/CliManPage.h"
#include "core/Translations.h"
#include "state/SidebarItem.h"

#include <QCoreApplication>

#include <cstdio>

namespace LaunchUsage {

CliProgram program()
{
    QStringList sections;
    for (const SidebarItem item : SidebarItem::allCases)
        sections << item.rawValue();

    CliProgram p;
    p.name = "sorvel-cleaner";
    p.purpose = "see where disk space goes and clean it up with care";
    p.version = QStringLiteral(SORVEL_VERSION);
    p.main.options = {
        {.name = "-scan",
         .value = {.name = "PATH", .kind = CliArgument::Kind::folder},
         .help = QT_TRANSLATE_NOOP("CommandLine", "Scan this folder as soon as the window opens.")},
        {.name = "-open",
         .value = {.name = "FILE", .kind = CliArgument::Kind::path},
         .help = QT_TRANSLATE_NOOP("CommandLine",
                                   "Show a saved scan (ncdu's JSON export, as sorvel scan --export-ncdu writes it); "
                                   "nothing can be removed from it.")},
        {.name = "-section",
         .value = {.name = "NAME", .kind = CliArgument::Kind::choice, .choices = sections},
         .help = QT_TRANSLATE_NOOP("CommandLine", "Open this section of the window.")},
        {.name = "-demo",
         .help = QT_TRANSLATE_NOOP("CommandLine", "Show a made-up home folder instead of this computer's disks, "
                                                  "and touch no file.")},
        {.name = "--version", .help = QT_TRANSLATE_NOOP("CommandLine", "Show the version.")},
        {.name = "--help-man", .help = "Print this manual page in roff.", .hidden = true},
        {.name = "--completion",
         .value = {.name = "SHELL", .kind = CliArgument::Kind::choice, .choices = CliCompletion::shells()},
         .help = "Print the completion script of a shell.",
         .hidden = true},
    };
    p.main.description = {
        QT_TRANSLATE_NOOP("CommandLine",
                          "Sorvel Cleaner walks a folder, a volume or the whole disk once and shows where the space "
                          "lives as browsable tiles. It picks out caches and build output that can be rebuilt, ranks "
                          "the heaviest files, finds big files nobody opened for months, and proves byte for byte "
                          "which files are identical."),
        QT_TRANSLATE_NOOP("CommandLine",
                          "Everything picked goes into one selection; after a review it goes to the Trash (or is "
                          "removed for good), and the app says in plain words what stayed behind and why. A fixed "
                          "guard refuses system and personal folders, and the removal never follows a link or leaves "
                          "the item's volume."),
        QT_TRANSLATE_NOOP("CommandLine",
                          "The app also takes Qt's own options, such as -platform and -style. The command-line tool "
                          "sorvel runs the same engine without a window."),
    };
    p.exitStatus = {
        {QStringLiteral("0"), QStringLiteral("The app was closed.")},
        {QStringLiteral("1"), QStringLiteral("The window could not be built.")},
    };
    p.environment = {
        {QStringLiteral("SORVEL_APPEARANCE"), QStringLiteral("dark or light: the look, whatever the desktop prefers.")},
        {QStringLiteral("SORVEL_REDUCE_MOTION"),
         QStringLiteral("1 or 0: animations kept short, or not, whatever the desktop says.")},
        {QStringLiteral("HOME"), QStringLiteral("The home folder: the Trash, the caches and the protected personal "
                                                "folders are found from it.")},
        {QStringLiteral("XDG_CONFIG_HOME"), QStringLiteral("Holds the settings (default ~/.config).")},
        {QStringLiteral("XDG_DATA_HOME"), QStringLiteral("Holds the home Trash (default ~/.local/share).")},
        {QStringLiteral("XDG_STATE_HOME"), QStringLiteral("Holds the removal journal (default ~/.local/state).")},
    };
    p.files = {
        {QStringLiteral("$XDG_CONFIG_HOME/Sorvel/Sorvel Cleaner.conf"), QStringLiteral("The settings.")},
        {QStringLiteral("$XDG_STATE_HOME/sorvel-cleaner/removals"),
         QStringLiteral("The removal journal, from which a removal to the Trash is undone.")},
    };
    p.seeAlso = {QStringLiteral("sorvel(1)")};
    return p;
}

namespace {

int print(FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
    return 0;
}

} // namespace

int handle(int argc, char *argv[])
{
    enum class Answer { none, help, version, manual, completion };
    Answer answer = Answer::none;
    QByteArray shell;
    const CliProgram described = program();
    for (int i = 1; i < argc && answer == Answer::none; ++i) {
        const QByteArray arg(argv[i]);
        if (arg == "-h" || arg == "--help") {
            answer = Answer::help;
        } else if (arg == "--version") {
            answer = Answer::version;
        } else if (arg == "--help-man") {
            answer = Answer::manual;
        } else if (arg == "--completion") {
            answer = Answer::completion;
            shell = i + 1 < argc ? QByteArray(argv[i + 1]) : QByteArray();
        } else if (const CliOption *option = described.main.option(arg); option && option->takesValue()) {
            ++i; // a value, such as a folder named "--help"
        }
    }
    if (answer == Answer::none)
        return -1;

    // Only to find the user's language: the app proper builds its own later.
    QCoreApplication app(argc, argv);
    Translations::install();
    switch (answer) {
    case Answer::help:
        return print(stdout, CliHelp::program(described));
    case Answer::version:
        return print(stdout, QStringLiteral("sorvel-cleaner %1\n").arg(described.version));
    case Answer::manual:
        return print(stdout, CliManPage::write(described));
    case Answer::completion:
        if (const QString script = CliCompletion::script(described, QString::fromLocal8Bit(shell)); !script.isNull())
            return print(stdout, script);
        print(stderr, QStringLiteral("sorvel-cleaner: --completion takes one of %1\n")
                          .arg(CliCompletion::shells().join(QLatin1String(", "))));
        return 2;
    case Answer::none:
        break;
    }
    return -1;
}

} // namespace LaunchUsage
