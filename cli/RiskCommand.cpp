#include "Command.h"

#include "core/Paths.h"
#include "safety/RiskCatalog.h"
#include "safety/SafetyGuard.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstring>

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
                  "The risk is judged by the path's text, which need not exist. The guard also\n"
                  "judges where the path really leads (its folder resolved through every link,\n"
                  "the last name never followed) and says which of the two it refused.\n"
                  "A relative path is taken from the current folder. A path that does not\n"
                  "exist is judged all the same and said to be missing; the status is then 1.\n";
        return args.isEmpty() ? 2 : 0;
    }

    const QByteArray cwd = QFile::encodeName(QDir::currentPath());
    bool first = true;
    bool missing = false;
    for (const QByteArray &arg : args) {
        if (arg.isEmpty()) {
            Commands::err() << tr("sorvel risk: an empty argument names no path") << '\n';
            return 2;
        }
        // A relative path is taken from the current folder, as a shell would.
        const QByteArray given = arg.startsWith('/') || arg.startsWith('~') ? arg : Paths::join(cwd, arg);
        const QByteArray path = SafetyProfile::standard().normalize(given);
        // The one fact the catalogue takes from the caller that we can know here.
        struct stat st {};
        const bool exists = ::lstat(path.constData(), &st) == 0;
        const int lookError = exists ? 0 : errno;
        const bool isDirectory = exists && S_ISDIR(st.st_mode);
        const Risk verdict = RiskCatalog::assess(path, isDirectory, false);
        const SafetyGuard::Verdict last = SafetyGuard::lastWord(given);

        if (!first)
            out << '\n';
        first = false;
        out << Paths::toDisplay(path) << '\n';
        if (!exists) {
            missing = true;
            const bool absent = lookError == ENOENT || lookError == ENOTDIR;
            out << "  " << (absent ? tr("does not exist") : tr("cannot be looked at")) << ": "
                << QString::fromLocal8Bit(std::strerror(lookError)) << '\n';
        }
        if (!last.realPlace.isEmpty() && last.realPlace != path)
            out << "  " << tr("leads to") << ": " << Paths::toDisplay(last.realPlace) << '\n';
        out << "  " << verdict.level.name();
        if (verdict.hasBadge())
            out << ": " << verdict.title << '\n' << "  " << verdict.why << '\n';
        else
            out << ": " << tr("nothing special is known") << '\n';
        if (last.refusedBy == SafetyGuard::Verdict::Form::text)
            out << "  " << tr("protected (by its text)") << ": " << last.reason << '\n';
        else if (last.refusedBy == SafetyGuard::Verdict::Form::realPlace)
            out << "  " << tr("protected (where it really leads)") << ": " << last.reason << '\n';
    }
    return missing ? 1 : 0;
}

} // namespace

SORVEL_COMMAND(risk, "risk", "risk PATH...\n      Show the risk verdict for each path and whether it is protected.",
               risk);
