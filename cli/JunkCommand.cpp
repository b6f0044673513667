#include "Command.h"

#include "core/Fmt.h"
#include "core/Paths.h"
#include "core/Platform.h"
#include "core/TrashFolders.h"
#include "deepclean/JunkLocation.h"
#include "scan/DiskScanner.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <climits>

namespace {

// A count in the form the table gives for `n`.
QString items(const char *text, qint64 n)
{
    return QCoreApplication::translate("JunkCommand", text, nullptr, int(std::min<qint64>(n, INT_MAX)));
}

CliCommand describe()
{
    QStringList ids;
    for (const JunkLocation &l : JunkLocation::all())
        ids << l.id;
    return {
        .name = "junk",
        .summary = QT_TRANSLATE_NOOP("CommandLine", "Measure the known junk locations."),
        .options =
            {
                {.name = "--json", .help = QT_TRANSLATE_NOOP("CommandLine", "Print the result as JSON.")},
                {.name = "--contents",
                 .value = {.name = "ID", .kind = CliArgument::Kind::choice, .choices = ids},
                 .help = QT_TRANSLATE_NOOP("CommandLine", "List what the location ID holds, largest first.")},
            },
        .description = {
            QT_TRANSLATE_NOOP("CommandLine",
                              "Measures the Deep Clean locations of this system for the current user and lists "
                              "those worth showing, with their size, item count and whether all of it could be read, "
                              "and then what the Trash holds."),
        }};
}

QJsonObject usageJson(const DiskUsage &u)
{
    return {{QStringLiteral("size"), double(u.size)},
            {QStringLiteral("items"), double(u.items)},
            {QStringLiteral("exists"), u.exists},
            {QStringLiteral("readable"), u.readable}};
}

int listContents(const JunkLocation &location, bool json)
{
    const QList<JunkEntry> entries = location.entries();
    QTextStream &out = Commands::out();
    if (json) {
        QJsonArray array;
        for (const JunkEntry &e : entries)
            array.append(QJsonObject{{QStringLiteral("path"), Paths::toText(e.path)},
                                     {QStringLiteral("size"), double(e.size)},
                                     {QStringLiteral("isDirectory"), e.isDirectory}});
        out << QJsonDocument(QJsonObject{{QStringLiteral("id"), location.id}, {QStringLiteral("entries"), array}})
                   .toJson(QJsonDocument::Indented);
        return 0;
    }
    out << location.title << " (" << location.id << "): " << items("%n items", qint64(entries.size())) << '\n';
    for (const JunkEntry &e : entries)
        out << "  " << Fmt::bytes(e.size).rightJustified(10) << "  " << Paths::toDisplay(e.path)
            << (e.isDirectory ? "/" : "") << '\n';
    return 0;
}

int run(const CliParser &args)
{
    const bool json = args.isSet("--json");
    const QByteArray contentsId = args.value("--contents");

    const QList<JunkLocation> locations = JunkLocation::all();
    // The table offers the locations' ids as the only values of --contents.
    if (!contentsId.isNull()) {
        for (const JunkLocation &l : locations)
            if (l.id == QLatin1String(contentsId))
                return listContents(l, json);
    }

    QTextStream &out = Commands::out();
    QJsonArray array;
    qint64 total = 0;
    int shown = 0;
    for (const JunkLocation &l : locations) {
        const DiskUsage usage = l.measure();
        if (!JunkLocation::isWorthShowing(usage))
            continue;
        total += usage.size;
        ++shown;
        if (json) {
            QJsonArray paths;
            for (const QByteArray &p : l.existingPaths())
                paths.append(Paths::toText(p));
            QJsonObject o{{QStringLiteral("id"), l.id},
                          {QStringLiteral("title"), l.title},
                          {QStringLiteral("risk"), l.risk.rawValue()},
                          {QStringLiteral("paths"), paths},
                          {QStringLiteral("usage"), usageJson(usage)}};
            array.append(o);
            continue;
        }
        out << Fmt::bytes(usage.size).rightJustified(10) << "  " << l.title.leftJustified(26) << ' '
            << items("%1 items", usage.items).arg(QString::number(usage.items).rightJustified(7))
            << (l.risk == JunkLocation::Risk::caution ? "  (look first)" : "")
            << (usage.readable ? "" : "  (partly unreadable)") << "  [" << l.id << "]\n";
    }
    // The Trash: the home one and this user's on every mounted volume.
    DiskUsage trash{0, 0, false, true};
    for (const QByteArray &folder : TrashFolders::ofUser(Platform::homeDirectory(), TrashFolders::mountPoints())) {
        const DiskUsage usage = DiskScanner::usage(folder);
        trash.size += usage.size;
        trash.items += usage.items;
        trash.exists = trash.exists || usage.exists;
        trash.readable = trash.readable && (usage.readable || !usage.exists);
    }
    if (json) {
        out << QJsonDocument(
                   QJsonObject{{QStringLiteral("locations"), array}, {QStringLiteral("trash"), usageJson(trash)}})
                   .toJson(QJsonDocument::Indented);
        return 0;
    }
    if (shown == 0)
        out << "Nothing to clean in the known places.\n";
    else
        out << Fmt::bytes(total).rightJustified(10) << "  in all\n";
    out << Fmt::bytes(trash.size).rightJustified(10) << "  already in the Trash (" << items("%n items", trash.items)
        << ')' << (trash.readable ? "" : "  (partly unreadable)") << '\n';
    return 0;
}

} // namespace

SORVEL_COMMAND(junk, "junk", describe, run);
