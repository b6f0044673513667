#pragma once

// The one long-lived state of the application and its composition root: what
// is shown, what was scanned, the volumes and the recent targets, and the
// sub-models (selection, Deep Clean, duplicates, the removal road). Lives on
// the main thread for the life of the process; workers never touch it and hand
// their results back by queued call.

#include "Area.h"
#include "Environment.h"
#include "RemovalSession.h"
#include "SidebarItem.h"
#include "Toast.h"

#include "core/CancelToken.h"
#include "core/FileCategory.h"
#include "core/ScanOptions.h"
#include "core/ScanProgress.h"
#include "core/ScanResult.h"
#include "core/VolumeInfo.h"
#include "deepclean/CleanupModel.h"
#include "duplicates/DuplicatesModel.h"
#include "removal/CleanQueue.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QHash>
#include <QList>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QThreadPool>
#include <QTimer>
#include <QUrl>
#include <QVariant>
#include <QVariantList>
#include <QVariantMap>

#include <functional>
#include <memory>
#include <optional>

class Desktop;

// Each observed field is a property with a change signal that fires only when
// the value really changes; writing the present value notifies nobody. A field
// is one member, one reader, one setter (through assign()) and one signal.
// Paths are bytes in C++; the properties give their lossless text form.
class AppState : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString section READ sectionText WRITE setSectionText NOTIFY sectionChanged)
    Q_PROPERTY(QString scanTarget READ scanTargetText NOTIFY scanTargetChanged)
    // The result shown was read from a saved scan: nothing of it can be removed.
    Q_PROPERTY(bool isSavedScan READ isSavedScan NOTIFY resultChanged)
    Q_PROPERTY(QString savedScanText READ savedScanText NOTIFY resultChanged)
    // The saved scan's folder is a folder on this machine, which can be scanned.
    Q_PROPERTY(bool canRescanSavedScan READ canRescanSavedScan NOTIFY resultChanged)
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY isScanningChanged)
    Q_PROPERTY(double scanStarted READ scanStarted NOTIFY scanStartedChanged)
    Q_PROPERTY(ScanProgress progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(ScanResultPtr result READ result NOTIFY resultChanged)
    Q_PROPERTY(int revision READ revision NOTIFY revisionChanged)
    Q_PROPERTY(QList<VolumeInfo> volumes READ volumes NOTIFY volumesChanged)
    Q_PROPERTY(QVariant rootVolume READ rootVolumeValue NOTIFY volumesChanged)
    Q_PROPERTY(bool hasFullDiskAccess READ hasFullDiskAccess NOTIFY hasFullDiskAccessChanged)
    Q_PROPERTY(QStringList recents READ recentsText NOTIFY recentsChanged)
    Q_PROPERTY(QString errorMessage READ errorMessage WRITE setErrorMessage NOTIFY errorMessageChanged)
    // The toast on screen as {id, message, symbol}; empty while there is none.
    Q_PROPERTY(QVariantMap toast READ toastValue NOTIFY toastChanged)
    Q_PROPERTY(
        QString largestCategory READ largestCategoryText WRITE setLargestCategoryText NOTIFY largestCategoryChanged)
    Q_PROPERTY(QString folderFocus READ folderFocusText WRITE setFolderFocusText NOTIFY folderFocusChanged)
    Q_PROPERTY(bool isDemo READ isDemo CONSTANT)
    Q_PROPERTY(CleanQueue *queue READ queue CONSTANT)
    Q_PROPERTY(CleanupModel *cleanup READ cleanup CONSTANT)
    Q_PROPERTY(DuplicatesModel *duplicates READ duplicates CONSTANT)
    Q_PROPERTY(RemovalSession *removal READ removal CONSTANT)

public:
    using ScanFunction = Environment::ScanFunction;
    using VolumesFunction = Environment::VolumesFunction;

    // Reads the recent targets from the preferences, so Prefs::registerDefaults()
    // must have run. The launch arguments are the process's own unless set.
    explicit AppState(QObject *parent = nullptr);
    // Cancels a running scan and waits for the workers to return.
    ~AppState() override;

    // -- Seams, set before onLaunch -------------------------------------------
    // The launch arguments; "-demo" among them puts the state in the demo
    // environment, any other set in the system one.
    void setArguments(const QByteArrayList &arguments);
    const QByteArrayList &arguments() const { return m_arguments; }
    void setEnvironment(Environment environment);
    const Environment &environment() const { return m_environment; }
    // Replace one seam of the present environment.
    void setScanFunction(ScanFunction function) { m_environment.scan = std::move(function); }
    void setVolumesFunction(VolumesFunction function) { m_environment.volumes = std::move(function); }
    // Not owned; may be null, and then nothing that needs the desktop happens.
    void setDesktop(Desktop *desktop) { m_desktop = desktop; }
    Desktop *desktop() const { return m_desktop; }
    // Removes files through `operations` from now on. A removal under way
    // keeps what it started with.
    void setFileOperations(std::shared_ptr<FileOperations> operations)
    {
        m_environment.fileOperations = std::move(operations);
    }
    // Scales the minimum time a removal stays on screen (1 unless set; tests
    // use 0 so they do not wait).
    void setShowTimeScale(double scale) { m_removal.setShowTimeScale(scale); }

    bool isDemo() const { return m_environment.isDemo; }

    // -- Observed fields -------------------------------------------------------
    std::optional<SidebarItem> section() const { return m_section; }
    void setSection(std::optional<SidebarItem> section);
    QString sectionText() const;
    void setSectionText(const QString &raw); // unknown text leaves the section as it is

    const QByteArray &scanTarget() const { return m_scanTarget; } // empty when none
    QString scanTargetText() const;
    bool isSavedScan() const { return m_result && !m_result->importedFrom.isEmpty(); }
    // "Saved scan of … from …"; empty for a scan of the disk.
    QString savedScanText() const;
    bool canRescanSavedScan() const;
    bool isScanning() const { return m_isScanning; }
    double scanStarted() const { return m_scanStarted; } // seconds since the epoch
    const ScanProgress &progress() const { return m_progress; }
    const ScanResultPtr &result() const { return m_result; }
    int revision() const { return m_revision; }
    const QList<VolumeInfo> &volumes() const { return m_volumes; }
    bool hasFullDiskAccess() const { return m_hasFullDiskAccess; }
    const QByteArrayList &recents() const { return m_recents; } // newest first
    QStringList recentsText() const;

    QString errorMessage() const { return m_errorMessage; } // null when none
    void setErrorMessage(const QString &message);
    const std::optional<Toast> &toast() const { return m_toast; }
    void setToast(const std::optional<Toast> &toast);
    QVariantMap toastValue() const;
    // Shows a new toast in place of any other, with a button when `actionTitle`
    // is given (see triggerToastAction).
    void showToast(const QString &message, const QString &symbol, const QString &actionTitle = {},
                   const QString &action = {});
    // The toast's button was pressed: does its action if the toast with this
    // id is still the one shown, and clears it.
    Q_INVOKABLE void triggerToastAction(const QString &id);
    // Clears the toast, if it is still the one with this id.
    Q_INVOKABLE void clearToast(const QString &id);
    std::optional<FileCategory> largestCategory() const { return m_largestCategory; }
    void setLargestCategory(std::optional<FileCategory> category);
    QString largestCategoryText() const;
    void setLargestCategoryText(const QString &raw);
    const QByteArray &folderFocus() const { return m_folderFocus; } // empty when none
    void setFolderFocus(const QByteArray &path);
    QString folderFocusText() const;
    void setFolderFocusText(const QString &path);

    // -- Sub-models, fixed for the life of the state ----------------------------
    // The one selection of the application.
    CleanQueue *queue() { return &m_queue; }
    const CleanQueue *queue() const { return &m_queue; }
    // The state behind Deep Clean.
    CleanupModel *cleanup() { return &m_cleanup; }
    const CleanupModel *cleanup() const { return &m_cleanup; }
    // The state of one duplicate search.
    DuplicatesModel *duplicates() { return &m_duplicates; }
    const DuplicatesModel *duplicates() const { return &m_duplicates; }
    // The review and removal of the selection.
    RemovalSession *removal() { return &m_removal; }
    const RemovalSession *removal() const { return &m_removal; }

    // -- Unobserved fields -----------------------------------------------------
    // The item last shown in each area.
    std::optional<SidebarItem> lastInArea(Area area) const;
    const CancelTokenPtr &scanToken() const { return m_scanToken; }
    qint64 nextFileID() const { return m_nextFileID; }
    bool didLaunch() const { return m_didLaunch; }

    // The root volume, else the first one, else nothing.
    std::optional<VolumeInfo> rootVolume() const;
    QVariant rootVolumeValue() const;
    void setVolumes(const QList<VolumeInfo> &volumes);

    // -- Selection ---------------------------------------------------------------
    // A click on a row: selects or deselects it; inside a selected folder it
    // leaves that one thing out.
    void toggleSelection(const CleanItem &item);
    // Opens the selected folder that covers `path` and selects everything in it
    // except `path` (and the small files the scan did not list).
    void deselectInside(const QByteArray &path);
    Q_INVOKABLE void deselectInsideText(const QString &path);
    // Puts the paths on the clipboard, one a line.
    void copyPaths(const QByteArrayList &paths);
    Q_INVOKABLE void copyPathsText(const QStringList &paths);
    // Takes paths that are gone off the scan result and the duplicates, with
    // `freed` (path -> bytes) for the figures, and bumps the revision.
    void applyRemoval(const QSet<QByteArray> &paths, const QHash<QByteArray, qint64> &freed);
    // Measures these paths anew on a worker and puts what is there now into
    // the scan result in place of what it held for them (folders a removal
    // left half done, items put back from the Trash), then bumps the revision
    // and calls `done` on the main thread. A result replaced meanwhile is left
    // alone, and `done` still runs.
    void remeasure(const QByteArrayList &paths, std::function<void()> done = {});

    // -- Operations ------------------------------------------------------------
    // Runs once: lists the volumes and keeps them fresh, checks disk access, and
    // honours "-scan PATH" and "-section ITEM"; in demo mode loads the demo data.
    Q_INVOKABLE void onLaunch();
    // Scans the folder at `path`, cancelling a running scan first. The previous
    // result stays until the new one arrives.
    void scan(const QByteArray &path);
    Q_INVOKABLE void scanText(const QString &path);
    Q_INVOKABLE void scanUrl(const QUrl &url);
    // Reads the saved scan in `file` (ncdu's JSON format) on a worker and shows
    // it read-only, as a scan in progress is shown meanwhile; the shown result
    // stays when it can't be read, and the error says why.
    void openSavedScan(const QByteArray &file);
    // A folder is scanned, a file opened as a saved scan.
    Q_INVOKABLE void openUrl(const QUrl &url);
    // Asks the desktop for a saved scan and opens it.
    Q_INVOKABLE void chooseSavedScan();
    // Scans the folder of the saved scan shown, on this machine.
    Q_INVOKABLE void rescanSavedScan();
    Q_INVOKABLE void cancelScan();
    // Asks the desktop for a folder and scans it; a cancelled choice does nothing.
    Q_INVOKABLE void chooseFolderAndScan();
    // Re-reads the mounted volumes on a worker; the last listing to finish wins.
    Q_INVOKABLE void refreshVolumes();
    Q_INVOKABLE void checkFullDiskAccess();
    // Puts `path` at the front of the recent targets, six at most, and stores them.
    void addRecent(const QByteArray &path);
    // Takes `path` out of the recent targets, and stores them.
    void removeRecent(const QByteArray &path);
    // Shows `result` as the scan of `target`: a fresh revision, no category or
    // folder focus.
    void showResult(const QByteArray &target, const ScanResultPtr &result);

    // Asks "Empty the Trash?"; the answer yes empties it.
    Q_INVOKABLE void askEmptyTrash();
    // Deletes everything in the user's trash folders on a worker (the demo only
    // pretends). A toast tells what it freed, or the error what stayed; then
    // the Trash is measured again.
    void emptyTrash();
    // Asks "Remove unavailable simulators?"; yes runs simctl (macOS only).
    Q_INVOKABLE void askRemoveSimulators();
    void removeUnavailableSimulators();

    // Seconds between two volume listings after launch.
    static constexpr int volumeRefreshSeconds = 30;

signals:
    void sectionChanged();
    void scanTargetChanged();
    void isScanningChanged();
    void scanStartedChanged();
    void progressChanged();
    void resultChanged();
    void revisionChanged();
    void volumesChanged();
    void hasFullDiskAccessChanged();
    void recentsChanged();
    void errorMessageChanged();
    void toastChanged();
    void largestCategoryChanged();
    void folderFocusChanged();

private:
    // Writes `value` into `field` and emits `changed`, unless they are equal.
    template <typename T>
    bool assign(T &field, const T &value, void (AppState::*changed)())
    {
        if (field == value)
            return false;
        field = value;
        emit(this->*changed)();
        return true;
    }

    void finishScan(const CancelTokenPtr &token, const ScanResultPtr &result, const QByteArray &target,
                    const QString &reason, bool saved = false);
    // Marks a scan or a reading begun for `target` with `token`.
    void beginScan(const QByteArray &target, const CancelTokenPtr &token);
    // What a worker calls with each snapshot of a scan begun with `token`.
    std::function<void(const ScanProgress &)> progressFor(const CancelTokenPtr &token);
    void handleSectionArgument();
    void finishEmptyTrash(qint64 freed, qint64 failed, const QString &problem);

    // Observed.
    std::optional<SidebarItem> m_section = SidebarItem::overview;
    QByteArray m_scanTarget;
    bool m_isScanning = false;
    double m_scanStarted = 0;
    ScanProgress m_progress;
    ScanResultPtr m_result;
    // What each removal took off the result's category totals, by path.
    ScanResult::CategoryTakes m_categoriesTaken;
    int m_revision = 0;
    QList<VolumeInfo> m_volumes;
    bool m_hasFullDiskAccess = true;
    QByteArrayList m_recents;
    QString m_errorMessage;
    std::optional<Toast> m_toast;
    std::optional<FileCategory> m_largestCategory;
    QByteArray m_folderFocus;

    // Unobserved.
    QMap<Area::Value, SidebarItem> m_lastInArea;
    CancelTokenPtr m_scanToken;
    qint64 m_nextFileID = 0;
    bool m_didLaunch = false;

    // Sub-models.
    CleanQueue m_queue;
    CleanupModel m_cleanup;
    DuplicatesModel m_duplicates;

    // Surroundings.
    QByteArrayList m_arguments;
    Environment m_environment;
    Desktop *m_desktop = nullptr;
    QTimer m_volumeTimer;
    QThreadPool m_workers;

    // Last: it reaches the members above, and its workers are waited for first.
    RemovalSession m_removal{*this};
};
