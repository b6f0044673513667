// Everything the application state asks of the desktop around it: a folder
// chooser, the clipboard, the file manager and the system settings. The interface
// implements it with real dialogs; tests hand in a fake. Main thread.

#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <QStringList>

#include <functional>

class Desktop
{
public:
    virtual ~Desktop();

    // Called once with the chosen folder's path, or with an empty path when the
    // user cancelled.
    using FolderChosen = std::function<void(const QByteArray &path)>;

    // Asks for one folder (no files), opened on `startIn`, with `prompt` on the
    // confirming button and `message` above the list. May answer later.
    virtual void chooseFolder(const QString &prompt, const QString &message, const QByteArray &startIn,
                              FolderChosen done) = 0;

    // Asks for one existing file matching `nameFilters` ("Saved scans (*.json)");
    // answers like chooseFolder. Answers "cancelled" unless overridden.
    virtual void chooseFile(const QString &prompt, const QString &message, const QByteArray &startIn,
                            const QStringList &nameFilters, FolderChosen done);

    // Puts plain text on the clipboard.
    virtual void copyText(const QString &text) = 0;

    // Shows the paths selected in the file manager. Does not wait.
    virtual void reveal(const QByteArrayList &paths) = 0;

    // Opens the settings pane where Full Disk Access is granted;
    // FileActions::openFullDiskAccessSettings unless overridden.
    virtual void openFullDiskAccessSettings();
};
