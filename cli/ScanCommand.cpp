// `sorvel scan`: one walk of a folder with the application's scanner, printed as
// a summary for people or as one JSON document for programs.

#include "Command.h"
#include "InterruptWatch.h"
#include "JsonOut.h"

#include "core/CancelToken.h"
#include "core/Fmt.h"
#include "core/Paths.h"
#include "scan/DiskScanner.h"
#include "scan/NcduWriter.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QSaveFile>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <span>
#include <unordered_map>

#include <dirent.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QString tr(const char *text) { return QCoreApplication::translate("ScanCommand", text); }
// A count text, in the form the table gives for `n`.
QString tr(const char *text, qint64 n)
{
    return QCoreApplication::translate("ScanCommand", text, nullptr, int(std::min<qint64>(n, INT_MAX)));
}

struct Arguments {
    QByteArray path;
    ScanOptions options;
    bool json = false;
    int top = 10;
    DiskScanner::Walking walking = DiskScanner::Walking::automatic;
    QByteArray exportTo;   // ncdu's format; "-" for standard output
    QByteArray importFrom; // the same, read instead of walking the disk
};

// Digits with an optional decimal unit: 5000, 10k, 2.5M, 1G.
std::optional<qint64> parseSize(const QByteArray &text)
{
    QByteArray number = text.trimmed();
    double factor = 1;
    if (!number.isEmpty()) {
        switch (QChar::toLower(char16_t(number.back()))) {
        case 'k':
            factor = 1e3;
            break;
        case 'm':
            factor = 1e6;
            break;
        case 'g':
            factor = 1e9;
            break;
        case 't':
            factor = 1e12;
            break;
        default:
            break;
        }
        if (factor != 1)
            number.chop(1);
    }
    bool ok = false;
    const double value = number.toDouble(&ok);
    if (!ok || !std::isfinite(value) || std::signbit(value) || value * factor > 9e18)
        return std::nullopt;
    return qint64(value * factor);
}

CliCommand describe()
{
    return {
        .name = "scan",
        .summary = QT_TRANSLATE_NOOP(
            "CommandLine", "Walk a folder once and show its size, categories, biggest files and developer artefacts."),
        .arguments = {{.name = "PATH", .kind = CliArgument::Kind::folder, .optional = true}},
        .options =
            {
                {.name = "--min-size",
                 .value = {.name = "BYTES"},
                 .help = QT_TRANSLATE_NOOP("CommandLine",
                                           "List files one by one from this allocated size on (default 1000000; "
                                           "10k, 5M, 1G are decimal). Smaller files still count in every total.")},
                {.name = "--exclude",
                 .value = {.name = "PATH", .kind = CliArgument::Kind::folder},
                 .help = QT_TRANSLATE_NOOP("CommandLine", "A folder never to enter; repeat it for more."),
                 .repeatable = true},
                {.name = "--skip-hidden",
                 .help = QT_TRANSLATE_NOOP("CommandLine", "Leave out names that begin with a dot.")},
                {.name = "--no-packages",
                 .help = QT_TRANSLATE_NOOP("CommandLine", "Walk bundle folders (.app, .framework, ...) as folders "
                                                          "instead of counting each as one file.")},
                {.name = "--json",
                 .help = QT_TRANSLATE_NOOP("CommandLine",
                                           "Print the whole result as one JSON document instead of the summary.")},
                {.name = "--one-thread",
                 .help = QT_TRANSLATE_NOOP("CommandLine",
                                           "Read the disk on one thread only, as on a machine with one core. The "
                                           "result is the same; only the time differs.")},
                {.name = "--export-ncdu",
                 .value = {.name = "FILE", .kind = CliArgument::Kind::path},
                 .help = QT_TRANSLATE_NOOP("CommandLine",
                                           "Also save the whole tree, every file included, in ncdu's JSON export "
                                           "format to FILE (- for standard output, which then holds nothing else); "
                                           "ncdu -f FILE opens it.")},
                {.name = "--import-ncdu",
                 .value = {.name = "FILE", .kind = CliArgument::Kind::path},
                 .help = QT_TRANSLATE_NOOP("CommandLine",
                                           "Read a saved scan in ncdu's JSON export format (from ncdu -o or from "
                                           "--export-ncdu; - for standard input) instead of walking a folder, and "
                                           "show it as a scan by the same rules.")},
                {.name = "--top",
                 .value = {.name = "N"},
                 .help = QT_TRANSLATE_NOOP("CommandLine",
                                           "Show the N biggest files and developer artefacts (default 10).")},
            },
        .description = {
            QT_TRANSLATE_NOOP("CommandLine",
                              "Walks the folder once, as the app does, and prints the total size (allocated bytes, "
                              "each hard-linked file once), the number of files and folders, what could not be read, "
                              "the time taken, the totals per file category, the biggest files and the developer "
                              "artefacts found (node_modules, Rust target, Python virtualenvs, ...)."),
            QT_TRANSLATE_NOOP("CommandLine",
                              "On a terminal it shows live progress on standard error; Ctrl-C stops the walk. Folders "
                              "the system keeps for itself (/proc, /sys, /dev, /run, /media, /mnt, /net, /snap) are "
                              "not entered below the scanned folder, but can be scanned directly."),
        }};
}

// Reads the arguments; on a mistake prints one line and returns nothing.
std::optional<Arguments> parse(const CliParser &args)
{
    Arguments parsed;
    auto fail = [&args](const QString &message) {
        Commands::mistake(args.command(), message);
        return std::nullopt;
    };
    parsed.json = args.isSet("--json");
    if (args.isSet("--one-thread"))
        parsed.walking = DiskScanner::Walking::oneThread;
    parsed.options.skipHiddenFiles = args.isSet("--skip-hidden");
    if (args.isSet("--no-packages"))
        parsed.options.treatPackagesAsFiles = false;
    if (args.isSet("--min-size")) {
        const QByteArray value = args.value("--min-size");
        const auto size = parseSize(value);
        if (!size)
            return fail(tr("--min-size takes a number of bytes, such as 1000000 or 10M, not '%1'")
                            .arg(QString::fromLocal8Bit(value)));
        parsed.options.minTrackedSize = *size;
    }
    for (const QByteArray &folder : args.values("--exclude")) {
        if (folder.isEmpty())
            return fail(tr("--exclude needs a folder"));
        parsed.options.excludedPaths.append(folder);
    }
    if (args.isSet("--top")) {
        bool ok = false;
        const int top = args.value("--top").toInt(&ok);
        if (!ok || top < 0)
            return fail(tr("--top takes a number of files, such as 10"));
        parsed.top = top;
    }
    if (args.isSet("--export-ncdu")) {
        parsed.exportTo = args.value("--export-ncdu");
        if (parsed.exportTo.isEmpty())
            return fail(tr("--export-ncdu needs a file, or - for standard output"));
        if (parsed.exportTo == "-" && parsed.json)
            return fail(tr("--export-ncdu - and --json both want standard output; save the export to a file"));
    }
    if (args.isSet("--import-ncdu")) {
        parsed.importFrom = args.value("--import-ncdu");
        if (parsed.importFrom.isEmpty())
            return fail(tr("--import-ncdu needs a file, or - for standard input"));
        if (!parsed.exportTo.isEmpty())
            return fail(tr("--import-ncdu reads a saved scan and --export-ncdu saves a walk of the disk; use one"));
        if (!args.positional().isEmpty())
            return fail(tr("give a folder to scan or --import-ncdu, not both"));
        return parsed;
    }
    if (args.positional().isEmpty() || args.positional().first().isEmpty())
        return fail(tr("which folder? Give a path"));
    parsed.path = args.positional().first();
    return parsed;
}

// The root must be a folder we can list; anything else is the user's mistake.
bool checkRoot(const QByteArray &path)
{
    const QString shown = Paths::toDisplay(path);
    struct stat st;
    if (::stat(path.constData(), &st) != 0) {
        const int error = errno;
        Commands::err() << "sorvel scan: "
                        << (error == ENOENT ? tr("%1: no such file or folder").arg(shown)
                                            : tr("%1: %2").arg(shown, QString::fromLocal8Bit(std::strerror(error))))
                        << Qt::endl;
        return false;
    }
    if (!S_ISDIR(st.st_mode)) {
        Commands::err() << "sorvel scan: " << tr("%1 is a file, not a folder").arg(shown) << Qt::endl;
        return false;
    }
    DIR *dir = ::opendir(path.constData());
    if (!dir) {
        Commands::err() << "sorvel scan: "
                        << tr("cannot read %1: %2").arg(shown, QString::fromLocal8Bit(std::strerror(errno)))
                        << Qt::endl;
        return false;
    }
    ::closedir(dir);
    return true;
}

// ---- Live progress on a terminal ------------------------------------------------

int terminalWidth()
{
    winsize size{};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 20)
        return size.ws_col;
    return 80;
}

void showProgress(const ScanProgress &progress)
{
    QString line = tr("Scanning: %Ln files, %1", progress.filesScanned).arg(Fmt::bytes(progress.bytesScanned));
    const int room = terminalWidth() - 1 - int(line.size()) - 2;
    // Between the scanner's periodic updates, the child of the root being measured.
    QString path = Paths::toDisplay(progress.currentPath.isEmpty() && !progress.discovered.isEmpty()
                                        ? progress.discovered.last().path
                                        : progress.currentPath);
    if (!path.isEmpty() && room > 5) {
        if (path.size() > room)
            path = QStringLiteral("…") + path.right(room - 1);
        line += QStringLiteral("  ") + path;
    }
    const QByteArray bytes = "\r\x1b[K" + line.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stderr);
    std::fflush(stderr);
}

void clearProgress()
{
    std::fputs("\r\x1b[K", stderr);
    std::fflush(stderr);
}

// ---- JSON ------------------------------------------------------------------------

void writeJson(const QByteArray &root, const Arguments &args, const ScanResult &result)
{
    JsonOut out;
    out.raw("{\"format\":\"sorvel-scan\",\"version\":2,\"root\":");
    out.bytes(root);
    out.raw(",\"date\":");
    out.number(result.date);
    out.raw(",\"duration\":");
    out.number(result.duration);

    out.raw(",\"options\":{\"minTrackedSize\":");
    out.number(args.options.minTrackedSize);
    out.raw(",\"treatPackagesAsFiles\":");
    out.boolean(args.options.treatPackagesAsFiles);
    out.raw(",\"skipHiddenFiles\":");
    out.boolean(args.options.skipHiddenFiles);
    out.raw(",\"excludedPaths\":[");
    for (qsizetype i = 0; i < args.options.excludedPaths.size(); ++i) {
        out.raw(i ? "," : "");
        out.bytes(args.options.excludedPaths[i]);
    }
    out.raw("]}");

    out.raw(",\"totals\":{\"size\":");
    out.number(result.root->size);
    out.raw(",\"files\":");
    out.number(result.totalFiles);
    out.raw(",\"folders\":");
    out.number(result.totalDirs);
    out.raw(",\"listedFiles\":");
    out.number(qint64(result.files.size()));
    out.raw(",\"unreadable\":");
    out.number(result.unreadableCount);
    out.raw("},\"unreadableSamples\":[");
    for (qsizetype i = 0; i < result.unreadableSamples.size(); ++i) {
        out.raw(i ? "," : "");
        out.bytes(result.unreadableSamples[i]);
    }

    out.raw("],\"categories\":[");
    bool first = true;
    for (const auto &[value, total] : result.categoryTotals) {
        const FileCategory category(value);
        out.raw(first ? "{\"id\":" : ",{\"id\":");
        first = false;
        out.text(category.id());
        out.raw(",\"title\":");
        out.text(category.title());
        out.raw(",\"size\":");
        out.number(total.size);
        out.raw(",\"count\":");
        out.number(total.count);
        out.raw("}");
    }

    out.raw("],\"artifacts\":[");
    for (size_t i = 0; i < result.artifacts.size(); ++i) {
        const DevArtifact &a = result.artifacts[i];
        out.raw(i ? ",{\"path\":" : "{\"path\":");
        out.bytes(a.path);
        out.raw(",\"kind\":");
        out.text(a.kind);
        out.raw(",\"size\":");
        out.number(a.size);
        out.raw(",\"fileCount\":");
        out.number(a.fileCount);
        out.raw("}");
    }

    // The tree as a flat list in depth-first order, each folder naming its
    // parent's index and only its own name: any JSON reader copes, however deep
    // the tree, and the output grows with the number of folders, not their depth.
    out.raw("],\"folders\":[");
    std::unordered_map<const DirNode *, qint64> indexOf;
    std::vector<std::pair<const DirNode *, qint64>> stack{{result.root.get(), -1}};
    qint64 next = 0;
    while (!stack.empty()) {
        const auto [node, parent] = stack.back();
        stack.pop_back();
        const qint64 index = next++;
        indexOf.emplace(node, index);
        out.raw(index ? ",{\"parent\":" : "{\"parent\":");
        if (parent < 0)
            out.raw("null");
        else
            out.number(parent);
        out.raw(",\"name\":");
        out.bytes(node->name);
        out.raw(",\"size\":");
        out.number(node->size);
        out.raw(",\"fileCount\":");
        out.number(node->fileCount);
        out.raw(",\"smallFilesSize\":");
        out.number(node->smallFilesSize);
        out.raw(",\"artifactKind\":");
        if (node->artifactKind.isNull())
            out.raw("null");
        else
            out.text(node->artifactKind);
        // Why the folder couldn't be read, wholly or (partlyRead) in part.
        out.raw(",\"readError\":");
        if (node->hasReadError())
            out.text(DirNode::errorText(node->readError));
        else
            out.raw("null");
        out.raw(",\"partlyRead\":");
        out.boolean(node->partlyRead);
        out.raw("}");
        // Pushed in reverse so that children come out largest first.
        for (auto it = node->children.rbegin(); it != node->children.rend(); ++it)
            stack.emplace_back(it->get(), index);
    }

    out.raw("],\"files\":[");
    for (size_t i = 0; i < result.files.size(); ++i) {
        const FileItem &f = result.files[i];
        out.raw(i ? ",{\"id\":" : "{\"id\":");
        out.number(f.id);
        out.raw(",\"name\":");
        out.bytes(f.name);
        out.raw(",\"folder\":");
        const DirNodePtr parent = f.parentNode();
        const auto found = parent ? indexOf.find(parent.get()) : indexOf.end();
        if (found == indexOf.end())
            out.raw("null");
        else
            out.number(found->second);
        out.raw(",\"size\":");
        out.number(f.size);
        out.raw(",\"logicalSize\":");
        out.number(f.logicalSize);
        out.raw(",\"modified\":");
        out.number(f.modified);
        out.raw(",\"accessed\":");
        out.number(f.accessed);
        out.raw(",\"category\":");
        out.text(f.category.id());
        out.raw(",\"isPackage\":");
        out.boolean(f.isPackage);
        out.raw("}");
    }
    out.raw("]}\n");
}

// ---- Summary -----------------------------------------------------------------------

QString fileCount(qint64 n) { return tr("%Ln files", n); }

void writeSummary(const QByteArray &root, const Arguments &args, const ScanResult &result)
{
    QTextStream &out = Commands::out();
    const QLocale locale;
    auto row = [&out](const QString &label, const QString &value) {
        out << "  " << label.leftJustified(14) << value << '\n';
    };
    out << tr("Scanned %1 in %2").arg(Paths::toDisplay(root), Fmt::duration(result.duration)) << "\n\n";
    row(tr("Total size"), Fmt::bytes(result.root->size));
    row(tr("Files"), locale.toString(result.totalFiles));
    row(tr("Folders"), locale.toString(result.totalDirs));
    row(tr("Unreadable"), locale.toString(result.unreadableCount));
    const qsizetype samples = std::min<qsizetype>(result.unreadableSamples.size(), 5);
    for (qsizetype i = 0; i < samples; ++i)
        out << "      " << Paths::toDisplay(result.unreadableSamples[i]) << '\n';
    if (result.unreadableCount > samples)
        out << "      " << tr("(and %1 more)").arg(locale.toString(result.unreadableCount - samples)) << '\n';

    if (!result.categoryTotals.empty()) {
        out << '\n' << tr("By category") << '\n';
        for (const auto &[value, total] : result.categoryTotals)
            out << "  " << FileCategory(value).title().leftJustified(20) << Fmt::bytes(total.size).rightJustified(10)
                << "  " << fileCount(total.count) << '\n';
    }

    const size_t top = std::min(result.files.size(), size_t(args.top));
    if (top > 0) {
        out << '\n' << tr("Biggest files") << '\n';
        for (size_t i = 0; i < top; ++i) {
            const FileItem &f = result.files[i];
            out << "  " << Fmt::bytes(f.size).rightJustified(10) << "  " << Paths::toDisplay(f.path) << '\n';
        }
    } else if (args.top > 0) {
        out << '\n'
            << tr("No file reaches %1 on its own.").arg(Fmt::bytes(std::max<qint64>(args.options.minTrackedSize, 1)))
            << '\n';
    }

    if (!result.artifacts.empty() && args.top > 0) {
        out << '\n' << tr("Developer artefacts") << '\n';
        const size_t shown = std::min(result.artifacts.size(), size_t(args.top));
        for (const DevArtifact &a : std::span(result.artifacts).first(shown))
            out << "  " << Fmt::bytes(a.size).rightJustified(10) << "  " << a.kind.leftJustified(22) << "  "
                << Paths::toDisplay(a.path) << "  (" << fileCount(a.fileCount) << ")\n";
        if (result.artifacts.size() > shown) {
            qint64 rest = 0;
            for (const DevArtifact &a : std::span(result.artifacts).subspan(shown))
                rest += a.size;
            out << "  " << Fmt::bytes(rest).rightJustified(10) << "  "
                << tr("in %1 more artefacts").arg(locale.toString(qint64(result.artifacts.size() - shown))) << '\n';
        }
    }
    out.flush();
}

// Prints a saved scan read from a file as a scan of the disk is printed.
int runImport(const Arguments &args)
{
    const CancelTokenPtr token = makeCancelToken();
    const InterruptWatch interrupt(token);
    const bool live = ::isatty(STDERR_FILENO) == 1;
    const DiskScanner::ProgressCallback progress = live ? DiskScanner::ProgressCallback(showProgress) : nullptr;
    QString error;
    const ScanResultPtr result = DiskScanner::importNcdu(args.importFrom, args.options, 0, token, progress, &error);
    if (live)
        clearProgress();
    if (token->isCancelled()) {
        Commands::err() << "sorvel scan: " << tr("cancelled") << Qt::endl;
        return 130;
    }
    if (!result) {
        Commands::err() << "sorvel scan: " << Paths::toDisplay(args.importFrom) << ": " << error << Qt::endl;
        return 1;
    }
    if (args.json)
        writeJson(result->root->name, args, *result);
    else
        writeSummary(result->root->name, args, *result);
    std::fflush(stdout);
    return 0;
}

// Where --export-ncdu writes: a file that appears whole or not at all, or
// standard output.
std::unique_ptr<QFileDevice> openExport(const QByteArray &to)
{
    if (to == "-") {
        auto out = std::make_unique<QFile>();
        if (out->open(stdout, QIODevice::WriteOnly))
            return out;
        Commands::err() << "sorvel scan: " << tr("cannot write to standard output") << Qt::endl;
        return {};
    }
    auto out = std::make_unique<QSaveFile>(QFile::decodeName(to));
    if (out->open(QIODevice::WriteOnly))
        return out;
    Commands::err() << "sorvel scan: " << tr("cannot write %1: %2").arg(Paths::toDisplay(to), out->errorString())
                    << Qt::endl;
    return {};
}

int runScan(const CliParser &argv)
{
    const auto args = parse(argv);
    if (!args)
        return 2;
    if (!args->importFrom.isEmpty())
        return runImport(*args);
    const QByteArray root = Paths::normalize(args->path.startsWith('/') || args->path.startsWith('~')
                                                 ? args->path
                                                 : Paths::join(QFile::encodeName(QDir::currentPath()), args->path));
    if (!checkRoot(root))
        return 1;

    const CancelTokenPtr token = makeCancelToken();
    const InterruptWatch interrupt(token);

    const bool live = ::isatty(STDERR_FILENO) == 1;
    const DiskScanner::ProgressCallback progress = live ? DiskScanner::ProgressCallback(showProgress) : nullptr;
    // The tool has no window to keep alive: the walk runs on this thread and
    // reports straight to the terminal.
    std::unique_ptr<QFileDevice> exportFile;
    std::optional<NcduWriter> writer;
    if (!args->exportTo.isEmpty()) {
        exportFile = openExport(args->exportTo);
        if (!exportFile)
            return 1;
        writer.emplace(*exportFile, QStringLiteral(SORVEL_VERSION), token);
    }
    const ScanResultPtr result =
        DiskScanner::scan(root, args->options, 0, token, progress, args->walking, writer ? &*writer : nullptr);
    if (live)
        clearProgress();
    if (writer && (!result || !writer->finish())) {
        // A failed write cancelled the walk; say why rather than "cancelled".
        if (!writer->errorText().isEmpty()) {
            Commands::err() << "sorvel scan: " << writer->errorText() << Qt::endl;
            return 1;
        }
    }
    if (auto *saved = dynamic_cast<QSaveFile *>(exportFile.get()); saved && result && !saved->commit()) {
        Commands::err() << "sorvel scan: "
                        << tr("cannot write %1: %2").arg(Paths::toDisplay(args->exportTo), saved->errorString())
                        << Qt::endl;
        return 1;
    }

    if (token->isCancelled()) {
        Commands::err() << "sorvel scan: " << tr("cancelled") << Qt::endl;
        return 130;
    }
    if (!result) {
        Commands::err() << "sorvel scan: " << tr("could not walk %1").arg(Paths::toDisplay(root)) << Qt::endl;
        return 1;
    }
    if (args->exportTo == "-")
        exportFile->flush();
    else if (args->json)
        writeJson(root, *args, *result);
    else
        writeSummary(root, *args, *result);
    std::fflush(stdout);
    return 0;
}

} // namespace

SORVEL_COMMAND(scan, "scan", describe, runScan);
