#include "Command.h"

#include "core/Fmt.h"
#include "core/VolumeInfo.h"

#include <QCoreApplication>

namespace {

// Pads `text` to `width` characters, on the left for numbers.
QString pad(const QString &text, qsizetype width, bool right)
{
    return right ? text.rightJustified(width) : text.leftJustified(width);
}

CliCommand describe()
{
    return {.name = "volumes",
            .summary = QT_TRANSLATE_NOOP("CommandLine", "List the mounted volumes with their free and total space.")};
}

int run(const CliParser &)
{
    const QList<VolumeInfo> volumes = VolumeInfo::mounted();
    if (volumes.isEmpty()) {
        Commands::err() << "sorvel volumes: no volumes found" << Qt::endl;
        return 1;
    }

    const QStringList header = {QCoreApplication::translate("VolumesCommand", "Name"),
                                QCoreApplication::translate("VolumesCommand", "Mount point"),
                                QCoreApplication::translate("VolumesCommand", "Free"),
                                QCoreApplication::translate("VolumesCommand", "Total")};
    QList<QStringList> rows{header};
    for (const VolumeInfo &v : volumes)
        rows.append({v.name, v.pathText(), Fmt::bytes(v.available), Fmt::bytes(v.total)});

    QList<qsizetype> widths(header.size(), 0);
    for (const QStringList &row : rows)
        for (qsizetype i = 0; i < row.size(); ++i)
            widths[i] = qMax(widths[i], row[i].size());

    for (const QStringList &row : rows) {
        QString line;
        for (qsizetype i = 0; i < row.size(); ++i) {
            if (i > 0)
                line += QStringLiteral("  ");
            line += pad(row[i], widths[i], i >= 2);
        }
        Commands::out() << line << '\n';
    }
    return 0;
}

} // namespace

SORVEL_COMMAND(volumes, "volumes", describe, run);
