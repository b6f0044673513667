// Small requests to the platform: show files in the file manager, open the
// privacy settings, run a helper command. No instances; main thread.

#pragma once

#include <QByteArrayList>
#include <QString>
#include <QStringList>

#include <functional>

class QObject;

namespace FileActions {

// Shows the paths in the file manager without asking it over D-Bus. macOS:
// Finder selects them through `open -R`. Elsewhere the folder holding the first
// path is opened. Does not wait. The interface reveals through Desktop, whose
// implementation asks the freedesktop FileManager1 first and falls back on this.
void reveal(const QByteArrayList &paths);

// Opens the Full Disk Access pane of the system settings. Only macOS has one;
// elsewhere this does nothing.
void openFullDiskAccessSettings();

// What a finished command gave: its exit status and everything it wrote to
// standard output and standard error, interleaved as written. The status is -1
// when the command could not be started or did not exit normally.
struct RunResult {
    int status = -1;
    QString output;
};

// Runs `executable` with `arguments` to its end without blocking: returns at
// once, and `done` is called exactly once on the calling thread (which needs an
// event loop) when the command has ended or failed to start. When `context` is
// given and destroyed first, the command is stopped and `done` is not called.
void run(const QString &executable, const QStringList &arguments, std::function<void(const RunResult &)> done,
         QObject *context = nullptr);

} // namespace FileActions
