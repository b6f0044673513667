#pragma once

#include "CancelToken.h"
#include "FileCategory.h"
#include "Navigation.h"
#include "ScanOptions.h"
#include "ScanProgress.h"
#include "ScanResult.h"
#include "Toast.h"
#include "VolumeInfo.h"
#include "deepclean/CleanupModel.h"
#include "duplicates/DuplicatesModel.h"
#include "removal/CleanQueue.h"
#include "removal/ConfirmRequest.h"
#include "removal/DeletionFailure.h"
#include "removal/DeletionRequest.h"
#include "removal/FileOperations.h"

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

// The one long-lived state of the application: what is shown, what was scanned,
// the volumes and the recent targets. Lives on the main thread for the life of
// the process; workers never touch it and hand their results back by queued
// call.
//
// Each observed field is a property with a change signal that fires only when
// the value really changes; writing the present value notifies nobody. A field
// is one member, one reader, one setter (through assign()) and one signal.
// Paths are bytes in C++; the properties give their lossless text form.
class AppState : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString section READ sectionText WRITE setSectionText NOTIFY sectionChanged)
    Q_PROPERTY(QString scanTarget READ scanTargetText NOTIFY scanTargetChanged)
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
    Q_PROPERTY(bool isReviewing READ isReviewing WRITE setReviewing NOTIFY isReviewingChanged)
    Q_PROPERTY(bool isDeleting READ isDeleting NOTIFY isDeletingChanged)
    // Lossless text form of the paths of the removal under way.
    Q_PROPERTY(QStringList vanishingPaths READ vanishingPathsText NOTIFY vanishingPathsChanged)
    // Selection ids of the removal under way, in their text form.
    Q_PROPERTY(QStringList sorvelisingIDs READ sorvelisingIDsText NOTIFY sorvelisingIDsChanged)
    Q_PROPERTY(qint64 sessionFreed READ sessionFreed NOTIFY sessionFreedChanged)
    Q_PROPERTY(bool hasDeletionFailures READ hasDeletionFailures NOTIFY deletionFailuresChanged)
    // Each failure as {path (text form), reason (raw value), title, explanation, detail}.
    Q_PROPERTY(QVariantList deletionFailures READ deletionFailuresValue NOTIFY deletionFailuresChanged)

public:
    // Walks a tree on a worker; DiskScanner::scan unless replaced.
    using ScanFunction = std::function<ScanResultPtr(const QByteArray &root, const ScanOptions &options, qint64 firstID,
                                                     const CancelTokenPtr &token,
                                                     const std::function<void(const ScanProgress &)> &progress)>;
    // Lists the mounted volumes on a worker; VolumeInfo::mounted unless replaced.
    using VolumesFunction = std::function<QList<VolumeInfo>()>;

    // Reads the recent targets from the preferences, so Prefs::registerDefaults()
    // must have run. The launch arguments are the process's own unless set.
    explicit AppState(QObject *parent = nullptr);
    // Cancels a running scan and waits for the workers to return.
    ~AppState() override;

    // -- Seams, set before onLaunch -------------------------------------------
    void setArguments(const QByteArrayList &arguments);
    const QByteArrayList &arguments() const { return m_arguments; }
    void setScanFunction(ScanFunction function);
    void setVolumesFunction(VolumesFunction function);
    // Not owned; may be null, and then nothing that needs the desktop happens.
    void setDesktop(Desktop *desktop) { m_desktop = desktop; }
    Desktop *desktop() const { return m_desktop; }
    // What removes files; FileOperations::system() unless replaced. A removal
    // under way keeps the one it started with.
    void setFileOperations(std::shared_ptr<FileOperations> operations) { m_fileOperations = std::move(operations); }
    const std::shared_ptr<FileOperations> &fileOperations() const { return m_fileOperations; }
    // Scales the minimum time a removal stays on screen (1 unless set; tests
    // use 0 so they do not wait).
    void setShowTimeScale(double scale) { m_showTimeScale = scale; }

    // True when the launch arguments hold "-demo".
    bool isDemo() const { return m_demo; }

    // -- Observed fields -------------------------------------------------------
    std::optional<SidebarItem> section() const { return m_section; }
    void setSection(std::optional<SidebarItem> section);
    QString sectionText() const;
    void setSectionText(const QString &raw); // unknown text leaves the section as it is

    const QByteArray &scanTarget() const { return m_scanTarget; } // empty when none
    QString scanTargetText() const;
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
    // Shows a new toast in place of any other.
    void showToast(const QString &message, const QString &symbol);
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

    // -- Unobserved fields -----------------------------------------------------
    // The item last shown in each area.
    std::optional<SidebarItem> lastInArea(Area area) const;
    const CancelTokenPtr &scanToken() const { return m_scanToken; }
    qint64 nextFileID() const { return m_nextFileID; }
    bool didLaunch() const { return m_didLaunch; }

    // The root volume, else the first one, else nothing.
    std::optional<VolumeInfo> rootVolume() const;
    QVariant rootVolumeValue() const;

    // -- Removal ---------------------------------------------------------------
    bool isReviewing() const { return m_isReviewing; }
    void setReviewing(bool on);
    bool isDeleting() const { return m_isDeleting; }
    const std::optional<DeletionRequest> &pendingDeletion() const { return m_pendingDeletion; }
    void setPendingDeletion(const std::optional<DeletionRequest> &request);
    const std::optional<ConfirmRequest> &confirm() const { return m_confirm; }
    void setConfirm(const std::optional<ConfirmRequest> &request);
    const QSet<QByteArray> &vanishingPaths() const { return m_vanishingPaths; }
    QStringList vanishingPathsText() const;
    const QSet<QByteArray> &sorvelisingIDs() const { return m_sorvelisingIDs; }
    QStringList sorvelisingIDsText() const;
    // Path -> bytes freed by the last removal. Not observed.
    const QHash<QByteArray, qint64> &lastRemoval() const { return m_lastRemoval; }
    qint64 sessionFreed() const { return m_sessionFreed; }
    // What stayed behind after the last removal; absent when nothing did.
    const std::optional<QList<DeletionFailure>> &deletionFailures() const { return m_deletionFailures; }
    bool hasDeletionFailures() const { return m_deletionFailures.has_value(); }
    QVariantList deletionFailuresValue() const;
    void setDeletionFailures(const std::optional<QList<DeletionFailure>> &failures);
    Q_INVOKABLE void clearDeletionFailures() { setDeletionFailures(std::nullopt); }

    // Opens the review, unless the selection is empty or a removal runs.
    Q_INVOKABLE void sorvelise();
    // Removes the selected items with these ids (the ticked rows of the review):
    // expands them into paths and hands them to performDeletion.
    void sorvelise(const QSet<QByteArray> &ids, bool permanently);
    Q_INVOKABLE void sorveliseText(const QStringList &ids, bool permanently);
    // What sorvelise(ids, ...) would hand to performDeletion: absent when no
    // queued item has one of the ids; without items when they expand to nothing.
    std::optional<DeletionRequest> deletionRequest(const QSet<QByteArray> &ids);
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
    // Runs one removal: the guard's last word, the file operations on a worker,
    // at least the minimum show time, then the model, the toast, the failures,
    // the request's onComplete and a volume refresh. Returns at once. In demo
    // mode nothing on disk is touched.
    void performDeletion(const DeletionRequest &request, bool permanently);

    // -- Operations ------------------------------------------------------------
    // Runs once: lists the volumes and keeps them fresh, checks disk access, and
    // honours "-scan PATH" and "-section ITEM"; in demo mode loads the demo data.
    Q_INVOKABLE void onLaunch();
    // Scans the folder at `path`, cancelling a running scan first. The previous
    // result stays until the new one arrives.
    void scan(const QByteArray &path);
    Q_INVOKABLE void scanText(const QString &path);
    Q_INVOKABLE void scanUrl(const QUrl &url);
    Q_INVOKABLE void cancelScan();
    // Asks the desktop for a folder and scans it; a cancelled choice does nothing.
    Q_INVOKABLE void chooseFolderAndScan();
    // Re-reads the mounted volumes on a worker; the last listing to finish wins.
    Q_INVOKABLE void refreshVolumes();
    Q_INVOKABLE void checkFullDiskAccess();
    // Puts `path` at the front of the recent targets, six at most, and stores them.
    void addRecent(const QByteArray &path);

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
    void isReviewingChanged();
    void isDeletingChanged();
    void pendingDeletionChanged();
    void confirmChanged();
    void vanishingPathsChanged();
    void sorvelisingIDsChanged();
    void sessionFreedChanged();
    void deletionFailuresChanged();
    // After a removal has been applied to the models and the paths of the
    // removal under way have been emptied: the moment the views animate.
    void removalApplied();

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

    void finishScan(const CancelTokenPtr &token, const ScanResultPtr &result, const QByteArray &target);
    void launchDemo();
    void handleSectionArgument();
    void pretendDeletion(const DeletionRequest &request);
    void applyRemoval(const QSet<QByteArray> &paths);
    // The closing steps shared by a real and a pretended removal.
    void closeRemoval(const QSet<QByteArray> &removed);
    int showTimeMilliseconds(qsizetype count) const;

    // Observed.
    std::optional<SidebarItem> m_section = SidebarItem::overview;
    QByteArray m_scanTarget;
    bool m_isScanning = false;
    double m_scanStarted = 0;
    ScanProgress m_progress;
    ScanResultPtr m_result;
    int m_revision = 0;
    QList<VolumeInfo> m_volumes;
    bool m_hasFullDiskAccess = true;
    QByteArrayList m_recents;
    QString m_errorMessage;
    std::optional<Toast> m_toast;
    std::optional<FileCategory> m_largestCategory;
    QByteArray m_folderFocus;
    bool m_isReviewing = false;
    bool m_isDeleting = false;
    std::optional<DeletionRequest> m_pendingDeletion;
    std::optional<ConfirmRequest> m_confirm;
    QSet<QByteArray> m_vanishingPaths;
    QSet<QByteArray> m_sorvelisingIDs;
    qint64 m_sessionFreed = 0;
    std::optional<QList<DeletionFailure>> m_deletionFailures;

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
    bool m_demo = false;
    ScanFunction m_scanFunction;
    VolumesFunction m_volumesFunction;
    Desktop *m_desktop = nullptr;
    std::shared_ptr<FileOperations> m_fileOperations = FileOperations::system();
    double m_showTimeScale = 1.0;
    QHash<QByteArray, qint64> m_lastRemoval;
    QTimer m_volumeTimer;
    QThreadPool m_workers;
};
