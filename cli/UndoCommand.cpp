// `sorvel undo`: puts back what the last removal to the Trash moved, as the
// removal journal recorded it; `--list` shows the journal.

#include "Command.h"
#include "JsonOut.h"

#include "core/Fmt.h"
#include "core/Paths.h"
#include "removal/RemovalJournal.h"

#include <QCoreApplication>

#include <algorithm>
#include <climits>
#include <cstdio>

namespace {

QString tr(const char *text) { return QCoreApplication::translate("UndoCommand", text); }
// A count text, in the form the table gives for `n`.
QString tr(const char *text, qint64 n)
{
    return QCoreApplication::translate("UndoCommand", text, nullptr, int(std::min<qint64>(n, INT_MAX)));
}

CliCommand describe()
{
    return {
        .name = "undo",
        .summary = QT_TRANSLATE_NOOP(
            "CommandLine", "Put back what the last removal to the Trash moved; --list shows what can be undone."),
        .options =
            {
                {.name = "--list",
                 .help = QT_TRANSLATE_NOOP("CommandLine",
                                           "List the recorded removals, newest first: when, how many items, how many "
                                           "still lie in the Trash, their size and the first path.")},
                {.name = "--json",
                 .help = QT_TRANSLATE_NOOP("CommandLine", "Print the outcome (or the list) as one JSON object.")},
            },
        .description = {
            QT_TRANSLATE_NOOP("CommandLine",
                              "Puts back what the last removal to the Trash moved ('sorvel remove' or the app's "
                              "Sorvelise), each item at the place it came from. Nothing there is ever replaced: an "
                              "item whose old place is taken now, or whose folder is gone, stays in the Trash and is "
                              "listed with the reason."),
            QT_TRANSLATE_NOOP("CommandLine", "Exit status: 0 when everything came back, 1 when something stayed or "
                                             "there was nothing to undo."),
        }};
}

QString dateText(const QDateTime &date) { return date.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")); }

qint64 totalSize(const QList<TrashedItem> &items)
{
    qint64 sum = 0;
    for (const TrashedItem &item : items)
        sum += item.size;
    return sum;
}

void itemJson(JsonOut &out, const TrashedItem &item)
{
    out.key("path", true);
    out.bytes(item.original);
    out.key("trashedAs");
    out.bytes(item.trashedAs);
    out.key("size");
    out.number(item.size);
}

int list(const RemovalJournal &journal, bool json)
{
    const QList<RemovalJournal::Entry> entries = journal.entries();
    if (json) {
        JsonOut out;
        out.raw("{");
        out.key("entries", true);
        out.raw("[");
        for (qsizetype i = 0; i < entries.size(); ++i) {
            const RemovalJournal::Entry &entry = entries[i];
            out.raw(i ? ",{" : "{");
            out.key("file", true);
            out.bytes(entry.file);
            out.key("date");
            out.text(entry.date.toUTC().toString(Qt::ISODateWithMs));
            out.key("size");
            out.number(totalSize(entry.items));
            out.key("items");
            out.raw("[");
            for (qsizetype j = 0; j < entry.items.size(); ++j) {
                out.raw(j ? ",{" : "{");
                itemJson(out, entry.items[j]);
                out.key("inTrash");
                out.boolean(RemovalJournal::inTrash(entry.items[j]));
                out.raw("}");
            }
            out.raw("]}");
        }
        out.raw("]}\n");
        return 0;
    }
    QTextStream &out = Commands::out();
    if (entries.isEmpty())
        out << tr("No removal to the Trash is recorded.") << '\n';
    for (const RemovalJournal::Entry &entry : entries) {
        const auto inTrash = std::count_if(entry.items.cbegin(), entry.items.cend(), RemovalJournal::inTrash);
        out << dateText(entry.date) << "  " << tr("%n items", entry.items.size()).leftJustified(10) << "  "
            << tr("%1 in the Trash").arg(inTrash).leftJustified(16) << "  "
            << Fmt::bytes(totalSize(entry.items)).rightJustified(10) << "  "
            << Paths::toDisplay(entry.items.first().original) << (entry.items.size() > 1 ? QStringLiteral(" …") : "")
            << '\n';
    }
    return 0;
}

void printText(const RemovalJournal::UndoOutcome &outcome)
{
    QTextStream &out = Commands::out();
    if (!outcome.restored.isEmpty()) {
        out << tr("Put back:") << '\n';
        for (const TrashedItem &item : outcome.restored)
            out << "  " << Fmt::bytes(item.size).rightJustified(10) << "  " << Paths::toDisplay(item.original) << '\n';
    }
    if (!outcome.stayed.isEmpty()) {
        out << tr("Not put back:") << '\n';
        for (const RemovalJournal::Stayed &stayed : outcome.stayed)
            out << "    " << Paths::toDisplay(stayed.item.original) << '\n' << "        " << stayed.reason << '\n';
    }
    out << tr("%n items put back, %1", outcome.restored.size()).arg(Fmt::bytes(totalSize(outcome.restored))) << '\n';
}

void printJson(const RemovalJournal::Entry &entry, const RemovalJournal::UndoOutcome &outcome)
{
    Commands::out().flush();
    JsonOut out;
    out.raw("{");
    out.key("format", true);
    out.text(QStringLiteral("sorvel-undo"));
    out.key("version");
    out.number(qint64(1));
    out.key("date");
    out.text(entry.date.toUTC().toString(Qt::ISODateWithMs));
    out.key("restored");
    out.raw("[");
    for (qsizetype i = 0; i < outcome.restored.size(); ++i) {
        out.raw(i ? ",{" : "{");
        itemJson(out, outcome.restored[i]);
        out.raw("}");
    }
    out.raw("]");
    out.key("stayed");
    out.raw("[");
    for (qsizetype i = 0; i < outcome.stayed.size(); ++i) {
        out.raw(i ? ",{" : "{");
        itemJson(out, outcome.stayed[i].item);
        out.key("reason");
        out.text(outcome.stayed[i].reason);
        out.raw("}");
    }
    out.raw("]}\n");
}

int undoCommand(const CliParser &args)
{
    const bool listing = args.isSet("--list");
    const bool json = args.isSet("--json");

    const RemovalJournal journal(RemovalJournal::defaultFolder());
    if (listing)
        return list(journal, json);
    const std::optional<RemovalJournal::Entry> entry = journal.lastUndoable();
    if (!entry) {
        Commands::err() << "sorvel undo: " << tr("nothing to undo: no recorded removal has anything left in the Trash")
                        << Qt::endl;
        return 1;
    }
    const RemovalJournal::UndoOutcome outcome = journal.undo(*entry);
    if (json)
        printJson(*entry, outcome);
    else
        printText(outcome);
    Commands::out().flush();
    std::fflush(stdout);
    return outcome.stayed.isEmpty() ? 0 : 1;
}

} // namespace

SORVEL_COMMAND(undo, "undo", describe, undoCommand);
