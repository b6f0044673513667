// `sorvel remove`: the app's removal without a window. Each path meets the
// safety guard, goes to the Trash (noted in the removal journal, so that
// `sorvel undo` can put it back) or, with --forever, is removed for good.

#include "Command.h"
#include "InterruptWatch.h"
#include "JsonOut.h"
#include "ProgressLine.h"

#include "core/Fmt.h"
#include "core/Paths.h"
#include "core/RealPlace.h"
#include "removal/Removal.h"
#include "removal/RemovalJournal.h"
#include "safety/SafetyGuard.h"

#include <QCoreApplication>
#include <QSet>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <optional>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace {

QString tr(const char *text) { return QCoreApplication::translate("RemoveCommand", text); }
// A count text, in the form the table gives for `n`.
QString tr(const char *text, qint64 n)
{
    return QCoreApplication::translate("RemoveCommand", text, nullptr, int(std::min<qint64>(n, INT_MAX)));
}

CliCommand describe()
{
    return {
        .name = "remove",
        .summary = QT_TRANSLATE_NOOP("CommandLine",
                                     "Move files and folders to the Trash (or, with --forever, remove them for good)."),
        .arguments = {{.name = "PATH", .kind = CliArgument::Kind::path, .repeatable = true}},
        .options =
            {
                {.name = "--forever",
                 .help = QT_TRANSLATE_NOOP("CommandLine", "Remove for good instead, skipping the Trash. Asks first on "
                                                          "a terminal; without one it needs --yes.")},
                {.name = "--dry-run",
                 .help = QT_TRANSLATE_NOOP("CommandLine",
                                           "Only say what would go and what the guard keeps; touch nothing.")},
                {.name = "--yes", .help = QT_TRANSLATE_NOOP("CommandLine", "Do not ask.")},
                {.name = "--json", .help = QT_TRANSLATE_NOOP("CommandLine", "Print the outcome as one JSON object.")},
            },
        .description = {
            QT_TRANSLATE_NOOP("CommandLine",
                              "Moves each path to the Trash, as the app's Sorvelise does: the safety guard has its say "
                              "on each path and on where it really leads, and an item that changed between the start "
                              "and its turn is left alone. What went to the Trash can be put back with 'sorvel undo'. "
                              "A relative path starts in the current folder; after '--' every argument is a path."),
            QT_TRANSLATE_NOOP("CommandLine",
                              "Exit status: 0 when everything went (a path already gone counts as gone), 1 when "
                              "something stayed, 2 on a mistake in the arguments, 130 when stopped with Ctrl-C."),
        }};
}

struct Arguments {
    QByteArrayList paths;
    bool permanently = false;
    bool dryRun = false;
    bool yes = false;
    bool json = false;
};

std::optional<Arguments> parse(const CliParser &args)
{
    Arguments parsed;
    parsed.permanently = args.isSet("--forever");
    parsed.dryRun = args.isSet("--dry-run");
    parsed.yes = args.isSet("--yes");
    parsed.json = args.isSet("--json");
    parsed.paths = args.positional();
    if (parsed.paths.contains(QByteArray(""))) {
        Commands::mistake(args.command(), tr("an empty argument names no path"));
        return std::nullopt;
    }
    if (parsed.paths.isEmpty()) {
        Commands::mistake(args.command(), tr("what should go? Give one or more paths"));
        return std::nullopt;
    }
    return parsed;
}

// The path as the app holds it: absolute, "~" expanded, "." and ".." resolved
// by their text. The bytes stay the bytes given.
QByteArray absolute(const QByteArray &path)
{
    if (path.startsWith('/') || path.startsWith('~'))
        return Paths::normalize(path);
    std::vector<char> cwd(4096);
    while (!::getcwd(cwd.data(), cwd.size()) && errno == ERANGE)
        cwd.resize(cwd.size() * 2);
    return Paths::normalize(Paths::join(QByteArray(cwd.data()), path));
}

struct Went {
    QByteArray path;
    qint64 size = 0;
    bool alreadyGone = false;
};

// What a run did, or with --dry-run what it would do.
struct Report {
    QList<Went> went;
    QList<DeletionFailure> stayed;
    QByteArrayList notReached;
    QByteArray journal; // the journal entry written, if any
    qint64 total() const
    {
        qint64 sum = 0;
        for (const Went &w : went)
            sum += w.size;
        return sum;
    }
};

// What a run would do with each item: the guard's last word, then what is there.
void dryRun(const QList<DeletionItem> &items, Report &report)
{
    for (const DeletionItem &item : items) {
        const RealPlace place = RealPlace::open(item.path);
        const SafetyGuard::Verdict verdict = SafetyGuard::lastWord(item.path, place);
        if (verdict.refused()) {
            report.stayed.append({item.path, DeletionFailure::Reason::safetyGuard, verdict.reason});
            continue;
        }
        struct stat st {};
        const int error = place.isValid() ? place.statItem(st) : place.error();
        if (error == ENOENT || error == ENOTDIR)
            report.went.append({item.path, 0, true});
        else if (error)
            report.stayed.append({item.path, DeletionFailure::classify(error), FileOperations::describe(error)});
        else
            report.went.append({item.path, Removal::measure(place.path()), false});
    }
}

// Asks on the terminal whether to remove `count` items for good.
bool confirmed(qsizetype count)
{
    Commands::err() << tr("Remove %n items for good? This cannot be undone. [y/N] ", count);
    Commands::err().flush();
    char answer[64] = {};
    if (!std::fgets(answer, sizeof answer, stdin))
        return false;
    return answer[0] == 'y' || answer[0] == 'Y';
}

void run(const QList<DeletionItem> &items, const ReviewedItems &reviewed, bool permanently, const CancelTokenPtr &token,
         Report &report)
{
    const RemovalJournal records(RemovalJournal::defaultFolder());
    records.prune();
    RemovalJournal::Writer journal = records.begin();
    qint64 unrecorded = 0;
    ProgressLine line;
    Removal::Options options;
    options.reviewed = reviewed;
    options.token = token;
    options.trashed = [&journal, &unrecorded](const TrashedItem &item) {
        if (!journal.add(item))
            ++unrecorded;
    };
    if (line.enabled()) {
        options.progress = [&line](qsizetype done, qsizetype total, const QByteArray &path) {
            line.show(tr("%1 of %2: %3").arg(done + 1).arg(total).arg(Paths::toDisplay(path)));
        };
    }
    const auto operations = FileOperations::system();
    const Removal::Outcome outcome = Removal::run(items, permanently, *operations, options);
    line.clear();

    report.stayed += outcome.failures;
    QSet<QByteArray> failed;
    for (const DeletionFailure &failure : outcome.failures)
        failed.insert(failure.path);
    for (const DeletionItem &item : items) {
        const auto freed = outcome.freed.constFind(item.path);
        if (freed != outcome.freed.cend()) {
            // Not there at the start: nothing was freed by this run.
            const auto seen = options.reviewed.constFind(item.path);
            const bool wasThere = seen != options.reviewed.cend() && seen->item.has_value();
            report.went.append({item.path, *freed, !wasThere});
        } else if (!failed.contains(item.path)) {
            report.notReached.append(item.path);
        }
    }
    report.journal = journal.file();
    if (unrecorded > 0)
        Commands::err() << "sorvel remove: "
                        << tr("warning: the journal could not be written, so %n items cannot be put back", unrecorded)
                        << '\n';
}

void printText(const Report &report, const Arguments &args)
{
    QTextStream &out = Commands::out();
    if (!report.went.isEmpty()) {
        out << (args.dryRun ? (args.permanently ? tr("Would be removed for good:") : tr("Would go to the Trash:"))
                            : (args.permanently ? tr("Removed for good:") : tr("Moved to the Trash:")))
            << '\n';
        for (const Went &w : report.went)
            out << "  " << (w.alreadyGone ? QString() : Fmt::bytes(w.size)).rightJustified(10) << "  "
                << Paths::toDisplay(w.path) << (w.alreadyGone ? QStringLiteral("  (") + tr("already gone") + ')' : "")
                << '\n';
    }
    if (!report.stayed.isEmpty()) {
        out << (args.dryRun ? tr("Would stay:") : tr("Stayed:")) << '\n';
        for (const DeletionFailure::Reason::Value reason : DeletionFailure::Reason::allCases) {
            bool heading = false;
            for (const DeletionFailure &failure : report.stayed) {
                if (failure.reason != reason)
                    continue;
                if (!std::exchange(heading, true))
                    out << "  " << DeletionFailure::Reason(reason).title() << '\n';
                out << "    " << Paths::toDisplay(failure.path) << '\n' << "        " << failure.detail << '\n';
            }
        }
    }
    if (!report.notReached.isEmpty()) {
        out << tr("Not reached (stopped):") << '\n';
        for (const QByteArray &path : report.notReached)
            out << "    " << Paths::toDisplay(path) << '\n';
    }
    const qint64 count = report.went.size();
    const QString total = Fmt::bytes(report.total());
    if (args.dryRun)
        out << (args.permanently ? tr("%n items, %1 would be freed", count)
                                 : tr("%n items, %1 would go to the Trash", count))
                   .arg(total);
    else
        out << (args.permanently ? tr("%n items, %1 freed", count) : tr("%n items, %1 in the Trash", count)).arg(total);
    out << '\n';
    out.flush();
}

void printJson(const Report &report, const Arguments &args)
{
    Commands::out().flush();
    JsonOut out;
    out.raw("{");
    out.key("format", true);
    out.text(QStringLiteral("sorvel-remove"));
    out.key("version");
    out.number(qint64(1));
    out.key("forever");
    out.boolean(args.permanently);
    out.key("dryRun");
    out.boolean(args.dryRun);
    out.key("went");
    out.raw("[");
    for (qsizetype i = 0; i < report.went.size(); ++i) {
        const Went &w = report.went[i];
        out.raw(i ? ",{" : "{");
        out.key("path", true);
        out.bytes(w.path);
        out.key("size");
        out.number(w.size);
        out.key("alreadyGone");
        out.boolean(w.alreadyGone);
        out.raw("}");
    }
    out.raw("]");
    out.key("stayed");
    out.raw("[");
    for (qsizetype i = 0; i < report.stayed.size(); ++i) {
        const DeletionFailure &failure = report.stayed[i];
        out.raw(i ? ",{" : "{");
        out.key("path", true);
        out.bytes(failure.path);
        out.key("reason");
        out.text(failure.reason.rawValue());
        out.key("title");
        out.text(failure.reason.title());
        out.key("detail");
        out.text(failure.detail);
        out.raw("}");
    }
    out.raw("]");
    out.key("notReached");
    out.raw("[");
    for (qsizetype i = 0; i < report.notReached.size(); ++i) {
        out.raw(i ? "," : "");
        out.bytes(report.notReached[i]);
    }
    out.raw("]");
    out.key("total");
    out.number(report.total());
    out.key("journal");
    if (report.journal.isEmpty())
        out.raw("null");
    else
        out.bytes(report.journal);
    out.raw("}\n");
}

int removeCommand(const CliParser &argv)
{
    const auto args = parse(argv);
    if (!args)
        return 2;

    // The guard's first word, on the text alone, as the app's review has it;
    // its last word comes right before each item is touched.
    Report report;
    QList<DeletionItem> items;
    QSet<QByteArray> seen;
    for (const QByteArray &given : args->paths) {
        const QByteArray path = absolute(given);
        const QByteArray key = Paths::comparable(path);
        if (seen.contains(key))
            continue;
        seen.insert(key);
        if (SafetyGuard::isProtected(path))
            report.stayed.append({path, DeletionFailure::Reason::safetyGuard, SafetyGuard::reason(path)});
        else
            items.append({path, std::nullopt, false});
    }

    // Each item as it is now: what the user named is what goes, or nothing.
    const ReviewedItems reviewed = args->dryRun ? ReviewedItems() : Removal::review(items);
    const bool ask = args->permanently && !args->dryRun && !args->yes && !items.isEmpty();
    if (ask && ::isatty(STDIN_FILENO) != 1) {
        Commands::err() << "sorvel remove: "
                        << tr("--forever asks before it removes anything; with no terminal to ask on, add --yes")
                        << '\n';
        return 2;
    }
    if (ask && !confirmed(items.size())) {
        Commands::err() << "sorvel remove: " << tr("nothing was removed") << '\n';
        return 1;
    }

    const CancelTokenPtr token = makeCancelToken();
    if (args->dryRun) {
        dryRun(items, report);
    } else {
        const InterruptWatch interrupt(token);
        run(items, reviewed, args->permanently, token, report);
    }
    if (args->json)
        printJson(report, *args);
    else
        printText(report, *args);
    std::fflush(stdout);
    if (token->isCancelled()) {
        Commands::err() << "sorvel remove: " << tr("stopped") << Qt::endl;
        return 130;
    }
    return report.stayed.isEmpty() ? 0 : 1;
}

} // namespace

SORVEL_COMMAND(remove, "remove", describe, removeCommand);
