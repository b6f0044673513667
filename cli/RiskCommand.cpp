#include "Command.h"

#include "core/Paths.h"
#include "safety/RiskCatalog.h"
#include "safety/SafetyGuard.h"

#include <QCoreApplication>

#include <sys/stat.h>

// sorvel risk PATH...: the verdict the application would show for each path.
namespace {

QString tr(const char *text) { return QCoreApplication::translate("RiskCommand", text); }

int risk(const QByteArrayList &args)
{
    QTextStream &out = Commands::out();
    if (args.isEmpty() || args.first() == "-h" || args.first() == "--help") {
        QTextStream &stream = args.isEmpty() ? Commands::err() : out;
        stream << "Usage: sorvel risk PATH...\n\n"
                  "Shows, for each path, its risk level, the badge title and the sentence the\n"
                  "application would show, and whether the safety guard refuses to remove it.\n"
                  "Paths are judged by their text; a path need not exist.\n";
        return args.isEmpty() ? 2 : 0;
    }

    bool first = true;
    for (const QByteArray &arg : args) {
        const QByteArray path = SafetyProfile::standard().normalize(arg);
        // The one fact the catalogue takes from the caller that we can know here.
        struct stat st {};
        const bool isDirectory = ::lstat(path.constData(), &st) == 0 && S_ISDIR(st.st_mode);
        const Risk verdict = RiskCatalog::assess(path, isDirectory, false);

        if (!first)
            out << '\n';
        first = false;
        out << Paths::toDisplay(path) << '\n';
        out << "  " << verdict.level.name();
        if (verdict.hasBadge())
            out << ": " << verdict.title << '\n' << "  " << verdict.why << '\n';
        else
            out << ": " << tr("nothing special is known") << '\n';
        if (SafetyGuard::isProtected(path))
            out << "  " << tr("protected") << ": " << SafetyGuard::reason(path) << '\n';
    }
    return 0;
}

} // namespace

SORVEL_COMMAND(risk, "risk", "risk PATH...\n      Show the risk verdict for each path and whether it is protected.",
               risk);
