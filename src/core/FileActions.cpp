#include "FileActions.h"

#include "Paths.h"

#include <QFile>
#include <QProcess>
#include <QUrl>

#include <memory>

namespace FileActions {

namespace {

#if !defined(Q_OS_MACOS)
// A file URL that keeps every byte of the path.
QString fileUrl(const QByteArray &path) { return QString::fromLatin1("file://" + path.toPercentEncoding("/")); }

void openFolderOf(const QByteArray &path)
{
    QByteArray folder = Paths::parentOf(path);
    if (folder.isEmpty())
        folder = "/";
    QProcess::startDetached(QStringLiteral("xdg-open"), {fileUrl(folder)});
}
#endif

} // namespace

void reveal(const QByteArrayList &paths)
{
    if (paths.isEmpty())
        return;
#if defined(Q_OS_MACOS)
    QStringList args{QStringLiteral("-R")};
    for (const QByteArray &path : paths)
        args.append(QFile::decodeName(path));
    QProcess::startDetached(QStringLiteral("/usr/bin/open"), args);
#else
    openFolderOf(paths.first());
#endif
}

void openFullDiskAccessSettings()
{
#if defined(Q_OS_MACOS)
    QProcess::startDetached(
        QStringLiteral("/usr/bin/open"),
        {QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles")});
#endif
}

void run(const QString &executable, const QStringList &arguments, std::function<void(const RunResult &)> done,
         QObject *context)
{
    auto *process = new QProcess(context);
    process->setProcessChannelMode(QProcess::MergedChannels);
    process->setProgram(executable);
    process->setArguments(arguments);
    // Whichever comes first, the end or a failure to start, answers; the other
    // finds the callback gone.
    auto callback = std::make_shared<std::function<void(const RunResult &)>>(std::move(done));
    auto answer = [process, callback](const RunResult &result) {
        if (!*callback)
            return;
        auto f = std::move(*callback);
        *callback = nullptr;
        process->deleteLater();
        f(result);
    };
    QObject::connect(process, &QProcess::finished, process, [process, answer](int code, QProcess::ExitStatus status) {
        RunResult result;
        result.status = status == QProcess::NormalExit ? code : -1;
        result.output = QString::fromUtf8(process->readAll());
        answer(result);
    });
    QObject::connect(process, &QProcess::errorOccurred, process, [answer](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            answer(RunResult{});
    });
    if (context) {
        // Emitted before the context's children go: the command is stopped
        // without a word to a caller that no longer exists.
        QObject::connect(context, &QObject::destroyed, process, [process, callback] {
            *callback = nullptr;
            if (process->state() != QProcess::NotRunning) {
                process->kill();
                process->waitForFinished(1000);
            }
        });
    }
    process->start();
}

} // namespace FileActions
