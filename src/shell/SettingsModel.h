// SettingsModel: the settings window's view of the preferences. Every setter
// writes its preference at once; reading, and so opening the window, writes
// nothing. Made by QML on the GUI thread; follows PrefsNotifier, so a value
// written elsewhere shows at once.
#pragma once

#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QString>
#include <QStringList>
#include <QVariantList>

class AppState;

class SettingsModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT

    // "List files larger than": the choices' labels and the one in effect.
    Q_PROPERTY(QStringList sizeLabels READ sizeLabels NOTIFY sizeChanged)
    Q_PROPERTY(int sizeIndex READ sizeIndex NOTIFY sizeChanged)
    Q_PROPERTY(bool treatPackagesAsFiles READ treatPackagesAsFiles WRITE setTreatPackagesAsFiles NOTIFY
                   treatPackagesAsFilesChanged)
    Q_PROPERTY(bool skipHiddenFiles READ skipHiddenFiles WRITE setSkipHiddenFiles NOTIFY skipHiddenFilesChanged)
    // The "Never scan" list, clean and sorted: the entries, and {path, display}
    // per row.
    Q_PROPERTY(QStringList excludedPaths READ excludedPaths NOTIFY excludedPathsChanged)
    Q_PROPERTY(QVariantList excludedRows READ excludedRows NOTIFY excludedPathsChanged)
    Q_PROPERTY(bool showMenuBarExtra READ showMenuBarExtra WRITE setShowMenuBarExtra NOTIFY showMenuBarExtraChanged)
    Q_PROPERTY(bool trayAvailable READ trayAvailable CONSTANT)
    // The access row exists on macOS only.
    Q_PROPERTY(bool showsAccessRow READ showsAccessRow CONSTANT)
    Q_PROPERTY(bool hasFullDiskAccess READ hasFullDiskAccess NOTIFY hasFullDiskAccessChanged)
    // {level, title, lines} per risk level, in the catalogue's words.
    Q_PROPERTY(QVariantList legend READ legend CONSTANT)

public:
    // Follows AppStateForeign's instance, if there is one.
    explicit SettingsModel(QObject *parent = nullptr);
    void setState(AppState *state);

    // Whether the desktop shows tray icons; the app says so at start. True
    // until told otherwise.
    static void setTrayAvailable(bool available);

    QStringList sizeLabels() const;
    int sizeIndex() const;
    qint64 minTrackedSize() const;
    bool treatPackagesAsFiles() const;
    void setTreatPackagesAsFiles(bool on);
    bool skipHiddenFiles() const;
    void setSkipHiddenFiles(bool on);
    QStringList excludedPaths() const;
    QVariantList excludedRows() const;
    bool showMenuBarExtra() const;
    void setShowMenuBarExtra(bool on);
    bool trayAvailable() const;
    bool showsAccessRow() const;
    bool hasFullDiskAccess() const;
    QVariantList legend() const;

    // Stores the size of choice `index`; an index out of range does nothing.
    Q_INVOKABLE void chooseSize(int index);
    // Asks the desktop for a folder and adds it to "Never scan".
    Q_INVOKABLE void addExcluded();
    // Adds `path` to "Never scan", normalised; false when it is refused
    // (empty or relative). A path already listed stores the clean list again.
    Q_INVOKABLE bool addExcludedPath(const QString &path);
    Q_INVOKABLE void removeExcluded(const QString &path);
    Q_INVOKABLE void openFullDiskAccessSettings();

Q_SIGNALS:
    void sizeChanged();
    void treatPackagesAsFilesChanged();
    void skipHiddenFilesChanged();
    void excludedPathsChanged();
    void showMenuBarExtraChanged();
    void hasFullDiskAccessChanged();

private:
    void onPrefChanged(const QString &key);

    QPointer<AppState> m_state;
};
