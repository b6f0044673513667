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

CliCommand describe()
{
    return {
        .name = "risk",
        .summary = QT_TRANSLATE_NOOP("CommandLine", "Show the risk verdict for each path and whether it is protected."),
        .arguments = {{.name = "PATH", .kind = CliArgument::Kind::path, .repeatable = true}},
        .description = {
            QT_TRANSLATE_NOOP("CommandLine",
                              "Shows, for each path, its risk level, the badge title and the sentence the "
                              "application would show, and whether the safety guard refuses to remove it."),
            QT_TRANSLATE_NOOP("CommandLine",
                              "The risk is judged by the path's text, which need not exist. The guard also judges "
                              "where the path really leads (its folder resolved through every link, the last name "
                              "never followed) and says which of the two it refused."),
            QT_TRANSLATE_NOOP("CommandLine",
                              "A relative path is taken from the current folder; after '--' a path may begin with a "
                              "dash. A path that does not exist is judged all the same and said to be missing; the "
                              "status is then 1."),
        }};
}

int risk(const CliParser &parsed)
{
    QTextStream &out = Commands::out();
    const QByteArrayList &args = parsed.positional();
    if (args.isEmpty())
        return Commands::mistake(parsed.command(), tr("which paths? Give one or more"));

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

SORVEL_COMMAND(risk, "risk", describe, risk);
