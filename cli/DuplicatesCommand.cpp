#include "Command.h"
#include "InterruptWatch.h"
#include "JsonOut.h"
#include "ProgressLine.h"

#include "core/Fmt.h"
#include "core/Paths.h"
#include "core/Platform.h"
#include "core/TrashFolders.h"
#include "duplicates/DuplicateEngine.h"
#include "duplicates/DuplicatesModel.h"
#include "scan/DiskScanner.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <sys/stat.h>

namespace {

QString tr(const char *text) { return QCoreApplication::translate("TwinsCommand", text); }
// A count text, in the form the table gives for `n`.
QString tr(const char *text, qint64 n)
{
    return QCoreApplication::translate("TwinsCommand", text, nullptr, int(std::min<qint64>(n, INT_MAX)));
}

CliCommand describe()
{
    return {.name = "twins",
            .summary = QT_TRANSLATE_NOOP("CommandLine", "Find files with identical contents."),
            .arguments = {{.name = "PATH", .kind = CliArgument::Kind::folder}},
            .options =
                {
                    {.name = "--min-size",
                     .value = {.name = "BYTES"},
                     .help = QT_TRANSLATE_NOOP("CommandLine",
                                               "Only files that take at least this much disk space (default 1).")},
                    {.name = "--all",
                     .help = QT_TRANSLATE_NOOP("CommandLine",
                                               "Compare the files in the Trash and inside .git folders too.")},
                    {.name = "--json", .help = QT_TRANSLATE_NOOP("CommandLine", "Print the groups as JSON.")},
                },
            .description = {
                QT_TRANSLATE_NOOP("CommandLine",
                                  "Finds files with identical contents below PATH. Files of equal size are compared by "
                                  "samples first, then proven identical by a SHA-256 of their whole contents. Files in "
                                  "your Trash and inside .git folders are left out: copies kept there on purpose."),
            }};
}

QByteArray absolute(const QByteArray &path)
{
    if (path.startsWith('/') || path.startsWith('~'))
        return Paths::normalize(path);
    return Paths::normalize(Paths::join(QFile::encodeName(QDir::currentPath()), path));
}

QString dateText(double seconds)
{
    return QDateTime::fromMSecsSinceEpoch(qint64(seconds * 1000.0)).toString(QStringLiteral("yyyy-MM-dd HH:mm"));
}

QString errorText(int error)
{
    return error == 0 ? tr("not a regular file") : QString::fromLocal8Bit(std::strerror(error));
}

// The root must be a folder we can list, worded as `sorvel scan` words it.
bool checkRoot(const QByteArray &root, const QByteArray &given)
{
    const QString shown = Paths::toDisplay(given);
    struct stat st {};
    if (::stat(root.constData(), &st) != 0) {
        const int error = errno;
        Commands::err() << "sorvel twins: "
                        << (error == ENOENT ? tr("%1: no such file or folder").arg(shown)
                                            : tr("%1: %2").arg(shown, errorText(error)))
                        << '\n';
        return false;
    }
    if (!S_ISDIR(st.st_mode)) {
        Commands::err() << "sorvel twins: " << tr("%1 is a file, not a folder").arg(shown) << '\n';
        return false;
    }
    DIR *dir = ::opendir(root.constData());
    if (!dir) {
        Commands::err() << "sorvel twins: " << tr("cannot read %1: %2").arg(shown, errorText(errno)) << '\n';
        return false;
    }
    ::closedir(dir);
    return true;
}

void printText(const std::vector<DuplicateGroup> &groups, qint64 compared, qint64 reclaimable)
{
    QTextStream &out = Commands::out();
    for (const DuplicateGroup &group : groups) {
        out << group.id.left(12) << "  " << tr("%n copies", qint64(group.files.size())) << "  "
            << tr("%1 wasted").arg(Fmt::bytes(group.reclaimable())) << '\n';
        for (const FileItem &file : group.files)
            out << "  " << dateText(file.modified) << "  " << Paths::toDisplay(file.path) << '\n';
        out << '\n';
    }
    if (groups.empty()) {
        out << tr("No identical files among %n files.", compared) << '\n';
    } else {
        // Two counts in one sentence: each half takes its own form.
        out << tr("%n groups of identical files", qint64(groups.size())) << ' '
            << tr("among %n files; %1 reclaimable.", compared).arg(Fmt::bytes(reclaimable)) << '\n';
    }
}

// Written as it goes: a group can hold hundreds of thousands of files, and a
// document built in memory first would take several times the search itself.
void printJson(const QByteArray &root, qint64 minSize, const std::vector<DuplicateGroup> &groups, qint64 compared,
               qint64 reclaimable, const DuplicateEngine::Unreadable &unreadable)
{
    JsonOut out;
    out.raw("{");
    out.key("root", true);
    out.bytes(root);
    out.key("minSize");
    out.number(minSize);
    out.key("filesCompared");
    out.number(compared);
    out.key("unreadable");
    out.number(unreadable.count);
    out.key("unreadableSamples");
    out.raw("[");
    for (size_t i = 0; i < unreadable.samples.size(); ++i) {
        out.raw(i ? ",{" : "{");
        out.key("path", true);
        out.bytes(unreadable.samples[i].path);
        out.key("error");
        out.text(errorText(unreadable.samples[i].error));
        out.raw("}");
    }
    out.raw("]");
    out.key("reclaimable");
    out.number(reclaimable);
    out.key("groups");
    out.raw("[");
    for (size_t g = 0; g < groups.size(); ++g) {
        const DuplicateGroup &group = groups[g];
        out.raw(g ? ",{" : "{");
        out.key("id", true);
        out.text(group.id);
        out.key("size");
        out.number(group.size);
        out.key("copies");
        out.number(qint64(group.files.size()));
        out.key("reclaimable");
        out.number(group.reclaimable());
        out.key("files");
        out.raw("[");
        for (size_t f = 0; f < group.files.size(); ++f) {
            const FileItem &file = group.files[f];
            out.raw(f ? ",{" : "{");
            out.key("path", true);
            out.bytes(file.path);
            out.key("size");
            out.number(file.size);
            out.key("logicalSize");
            out.number(file.logicalSize);
            out.key("modified");
            out.number(file.modified);
            out.raw("}");
        }
        out.raw("]}");
    }
    out.raw("]}\n");
}

int duplicates(const CliParser &args)
{
    const bool json = args.isSet("--json");
    const bool all = args.isSet("--all");
    qint64 minSize = 1;
    if (args.isSet("--min-size")) {
        const QByteArray value = args.value("--min-size");
        bool ok = false;
        minSize = value.toLongLong(&ok);
        if (!ok || minSize < 0)
            return Commands::mistake(
                args.command(), tr("--min-size needs a number of bytes, not '%1'").arg(QString::fromLocal8Bit(value)));
    }
    const QByteArray path = args.positional().value(0);
    if (path.isEmpty())
        return Commands::mistake(args.command(), tr("which folder? Give a path"));

    const QByteArray root = absolute(path);
    if (!checkRoot(root, path))
        return 1;

    const CancelTokenPtr token = makeCancelToken();
    const InterruptWatch interrupt(token);
    ProgressLine line;
    const auto cancelled = [&] {
        line.clear();
        Commands::err() << tr("sorvel twins: cancelled") << '\n';
        return 130;
    };

    // Every file that can take part gets a FileItem; a floor of one byte keeps
    // what the scanner would skip as small.
    ScanOptions options;
    options.minTrackedSize = std::max<qint64>(minSize, 1);
    options.treatPackagesAsFiles = false;
    ScanResultPtr result = DiskScanner::scan(root, options, 1, token, [&](const ScanProgress &progress) {
        line.show(tr("Scanning… %n files, %1", progress.filesScanned).arg(Fmt::bytes(progress.bytesScanned)));
    });
    if (token->isCancelled())
        return cancelled();
    if (!result) {
        line.clear();
        Commands::err() << "sorvel twins: " << Paths::toDisplay(path) << ": " << tr("cannot be read") << '\n';
        return 1;
    }

    const std::vector<FileItem> files =
        all ? DuplicatesModel::candidates(result->files, minSize)
            : DuplicatesModel::candidates(result->files, minSize,
                                          TrashFolders::ofUser(Platform::homeDirectory(), TrashFolders::mountPoints()),
                                          true);
    // The tree is not needed any more; the files compared keep copies of what they need.
    const auto scanUnreadable = result->unreadableCount;
    result.reset();
    DuplicateEngine::Unreadable unreadable;
    const auto groups = DuplicateEngine::find(
        files, token,
        [&](double fraction, const QString &status) {
            line.show(Fmt::percent(fraction) + QLatin1String("  ") + status);
        },
        DuplicateEngine::Reading::automatic, &unreadable);
    line.clear();
    if (!groups)
        return cancelled();

    // Files that could not be read were not compared.
    const qint64 compared = qint64(files.size()) - unreadable.count;
    qint64 reclaimable = 0;
    for (const DuplicateGroup &group : *groups)
        reclaimable = saturatingAdd(reclaimable, group.reclaimable());
    if (json)
        printJson(root, minSize, *groups, compared, reclaimable, unreadable);
    else
        printText(*groups, compared, reclaimable);
    Commands::out().flush();
    if (unreadable.count > 0) {
        Commands::err() << "sorvel twins: "
                        << tr("warning: %n files could not be read and were left out of the comparison",
                              unreadable.count)
                        << '\n';
        for (const auto &sample : unreadable.samples)
            Commands::err() << "  " << Paths::toDisplay(sample.path) << ": " << errorText(sample.error) << '\n';
        if (unreadable.count > qint64(unreadable.samples.size()))
            Commands::err() << "  " << QChar(0x2026) << '\n';
    }
    if (scanUnreadable > 0) {
        Commands::err() << tr("%n folders or files could not be read.", scanUnreadable) << '\n';
    }
    return 0;
}

} // namespace

SORVEL_COMMAND(duplicates, "twins", describe, duplicates);
