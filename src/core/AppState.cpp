#include "AppState.h"

#include "Desktop.h"
#include "Fmt.h"
#include "FullDiskAccess.h"
#include "Paths.h"
#include "Platform.h"
#include "Prefs.h"
#include "demo/Demo.h"
#include "removal/Removal.h"
#include "safety/SafetyGuard.h"
#include "scan/DiskScanner.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPointer>

#include <pwd.h>

namespace {

double now() { return double(QDateTime::currentMSecsSinceEpoch()) / 1000.0; }

QByteArrayList processArguments()
{
    QByteArrayList out;
    for (const QString &arg : QCoreApplication::arguments())
        out.append(QFile::encodeName(arg));
    return out;
}

// "~" and "~/x" become the home folder, "~user/x" that user's home folder.
// Anything else, or an unknown user, stays as it is.
QByteArray expandTilde(const QByteArray &path)
{
    if (!path.startsWith('~'))
        return path;
    const qsizetype slash = path.indexOf('/');
    const QByteArray user = path.mid(1, slash < 0 ? -1 : slash - 1);
    const QByteArray rest = slash < 0 ? QByteArray() : path.mid(slash);
    QByteArray home;
    if (user.isEmpty()) {
        home = Platform::homeDirectory();
    } else if (const passwd *pw = ::getpwnam(user.constData()); pw && pw->pw_dir) {
        home = QByteArray(pw->pw_dir);
    } else {
        return path;
    }
    if (home == "/" && !rest.isEmpty())
        return rest;
    return home + rest;
}

// The path as people see it, with the home folder written as "~".
QString abbreviateHome(const QByteArray &path)
{
    const QByteArray home = Platform::homeDirectory();
    if (home != "/") {
        if (Paths::equal(path, home))
            return QStringLiteral("~");
        if (Paths::isBelow(path, home))
            return QStringLiteral("~") + Paths::toDisplay(QByteArrayView(path).sliced(home.size()));
    }
    return Paths::toDisplay(path);
}

} // namespace

AppState::AppState(QObject *parent)
    : QObject(parent), m_scanStarted(now()), m_arguments(processArguments()), m_demo(Demo::isOn(m_arguments)),
      m_scanFunction(&DiskScanner::scan), m_volumesFunction(&VolumeInfo::mounted)
{
    for (const QString &entry : Prefs::list(Prefs::recentTargets))
        m_recents.append(Paths::fromText(entry));
    // A scan that is cancelled but not yet returned may overlap a new one and a
    // volume listing; the global pool is shared with everything else.
    m_workers.setMaxThreadCount(qMax(4, QThread::idealThreadCount()));
    m_volumeTimer.setInterval(volumeRefreshSeconds * 1000);
    connect(&m_volumeTimer, &QTimer::timeout, this, [this] {
        if (!m_demo)
            refreshVolumes();
    });
}

AppState::~AppState()
{
    if (m_scanToken)
        m_scanToken->cancel();
    m_workers.waitForDone();
}

void AppState::setArguments(const QByteArrayList &arguments)
{
    m_arguments = arguments;
    m_demo = Demo::isOn(arguments);
}

void AppState::setScanFunction(ScanFunction function) { m_scanFunction = std::move(function); }

void AppState::setVolumesFunction(VolumesFunction function) { m_volumesFunction = std::move(function); }

// -- Fields -------------------------------------------------------------------

void AppState::setSection(std::optional<SidebarItem> section)
{
    if (section)
        m_lastInArea.insert(section->area(), *section);
    assign(m_section, section, &AppState::sectionChanged);
}

QString AppState::sectionText() const { return m_section ? m_section->rawValue() : QString(); }

void AppState::setSectionText(const QString &raw)
{
    if (raw.isEmpty())
        setSection(std::nullopt);
    else if (const auto item = SidebarItem::fromRawValue(raw))
        setSection(item);
}

QString AppState::scanTargetText() const { return Paths::toText(m_scanTarget); }

QStringList AppState::recentsText() const
{
    QStringList out;
    for (const QByteArray &path : m_recents)
        out.append(Paths::toText(path));
    return out;
}

void AppState::setErrorMessage(const QString &message)
{
    if (m_errorMessage.isNull() != message.isNull() || m_errorMessage != message) {
        m_errorMessage = message;
        emit errorMessageChanged();
    }
}

void AppState::setLargestCategory(std::optional<FileCategory> category)
{
    assign(m_largestCategory, category, &AppState::largestCategoryChanged);
}

QString AppState::largestCategoryText() const { return m_largestCategory ? m_largestCategory->rawValue() : QString(); }

void AppState::setLargestCategoryText(const QString &raw)
{
    if (raw.isEmpty())
        setLargestCategory(std::nullopt);
    else if (const auto category = FileCategory::fromRawValue(raw))
        setLargestCategory(category);
}

void AppState::setFolderFocus(const QByteArray &path) { assign(m_folderFocus, path, &AppState::folderFocusChanged); }

QString AppState::folderFocusText() const { return Paths::toText(m_folderFocus); }

void AppState::setFolderFocusText(const QString &path) { setFolderFocus(Paths::fromText(path)); }

void AppState::setToast(const std::optional<Toast> &toast) { assign(m_toast, toast, &AppState::toastChanged); }

QVariantMap AppState::toastValue() const
{
    if (!m_toast)
        return {};
    return {{QStringLiteral("id"), m_toast->id},
            {QStringLiteral("message"), m_toast->message},
            {QStringLiteral("symbol"), m_toast->symbol}};
}

void AppState::showToast(const QString &message, const QString &symbol) { setToast(Toast::make(message, symbol)); }

void AppState::clearToast(const QString &id)
{
    if (m_toast && m_toast->id == id)
        setToast(std::nullopt);
}

std::optional<SidebarItem> AppState::lastInArea(Area area) const
{
    const auto it = m_lastInArea.constFind(area);
    return it == m_lastInArea.cend() ? std::nullopt : std::optional<SidebarItem>(*it);
}

std::optional<VolumeInfo> AppState::rootVolume() const
{
    for (const VolumeInfo &v : m_volumes)
        if (v.isRoot)
            return v;
    if (!m_volumes.isEmpty())
        return m_volumes.first();
    return std::nullopt;
}

QVariant AppState::rootVolumeValue() const
{
    const auto v = rootVolume();
    return v ? QVariant::fromValue(*v) : QVariant();
}

// -- Launch -------------------------------------------------------------------

void AppState::onLaunch()
{
    if (m_didLaunch)
        return;
    m_didLaunch = true;

    if (m_demo) {
        launchDemo();
        handleSectionArgument();
        return;
    }

    refreshVolumes();
    checkFullDiskAccess();
    m_cleanup.measure();
    m_volumeTimer.start();

    const qsizetype scanAt = m_arguments.indexOf("-scan");
    if (scanAt >= 0 && scanAt + 1 < m_arguments.size())
        scan(expandTilde(m_arguments.at(scanAt + 1)));
    handleSectionArgument();
}

void AppState::handleSectionArgument()
{
    const qsizetype at = m_arguments.indexOf("-section");
    if (at < 0 || at + 1 >= m_arguments.size())
        return;
    if (const auto item = SidebarItem::fromRawValue(QString::fromUtf8(m_arguments.at(at + 1))))
        setSection(item);
}

void AppState::launchDemo()
{
    assign(m_volumes, QList<VolumeInfo>{Demo::volume()}, &AppState::volumesChanged);
    assign(m_hasFullDiskAccess, true, &AppState::hasFullDiskAccessChanged);
    m_cleanup.loadDemo();
    assign(m_scanTarget, QByteArray(Demo::home), &AppState::scanTargetChanged);
    ScanResultPtr demo = Demo::scanResult(m_nextFileID);
    m_nextFileID = qMax(m_nextFileID, demo->lastID);
    assign(m_result, demo, &AppState::resultChanged);
    assign(m_revision, m_revision + 1, &AppState::revisionChanged);
}

// -- Scanning -----------------------------------------------------------------

void AppState::scanText(const QString &path) { scan(Paths::fromText(path)); }

void AppState::scanUrl(const QUrl &url)
{
    if (!url.isLocalFile())
        return;
    // The encoded form keeps bytes that are not valid UTF-8.
    scan(QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()));
}

void AppState::scan(const QByteArray &path)
{
    if (path.isEmpty())
        return;
    if (m_isScanning)
        cancelScan();

    QByteArray absolute = path;
    if (!absolute.startsWith('/') && !absolute.startsWith('~'))
        absolute = QFile::encodeName(QDir::currentPath()) + '/' + absolute;
    const QByteArray target = DiskScanner::normalize(absolute);
    const ScanOptions options = ScanOptions::current();
    const CancelTokenPtr token = makeCancelToken();
    m_scanToken = token;

    assign(m_scanTarget, target, &AppState::scanTargetChanged);
    assign(m_isScanning, true, &AppState::isScanningChanged);
    assign(m_scanStarted, now(), &AppState::scanStartedChanged);
    assign(m_progress, ScanProgress{}, &AppState::progressChanged);
    // Twins found in the old result mean nothing for the new one.
    m_duplicates.reset();
    addRecent(target);
    const qint64 firstID = m_nextFileID;

    // The worker gets values only; whatever it produces comes back by queued
    // call and is looked at only while its token is still the current one.
    const ScanFunction walk = m_scanFunction;
    m_workers.start(
        [this, walk, target, options, firstID, token] {
            auto publish = [this, token](const ScanProgress &record) {
                QMetaObject::invokeMethod(
                    this,
                    [this, token, record] {
                        if (token == m_scanToken && !token->isCancelled())
                            assign(m_progress, record, &AppState::progressChanged);
                    },
                    Qt::QueuedConnection);
            };
            ScanResultPtr result = walk ? walk(target, options, firstID, token, publish) : ScanResultPtr();
            QMetaObject::invokeMethod(
                this, [this, token, result, target] { finishScan(token, result, target); }, Qt::QueuedConnection);
        },
        QThread::HighPriority);
}

void AppState::finishScan(const CancelTokenPtr &token, const ScanResultPtr &result, const QByteArray &target)
{
    // A cancelled or replaced scan leaves no trace.
    if (!m_scanToken || m_scanToken != token)
        return;
    m_scanToken.reset();
    assign(m_isScanning, false, &AppState::isScanningChanged);

    if (!result) {
        if (!token->isCancelled())
            setErrorMessage(tr("Couldn't scan %1.").arg(abbreviateHome(target)));
    } else {
        m_nextFileID = qMax(m_nextFileID, result->lastID);
        assign(m_result, result, &AppState::resultChanged);
        setLargestCategory(std::nullopt);
        setFolderFocus({});
        assign(m_revision, m_revision + 1, &AppState::revisionChanged);
        if (result->unreadableCount > 0)
            checkFullDiskAccess();
    }
    if (!m_demo)
        refreshVolumes();
}

void AppState::cancelScan()
{
    if (m_scanToken)
        m_scanToken->cancel();
    m_scanToken.reset();
    assign(m_isScanning, false, &AppState::isScanningChanged);
}

void AppState::chooseFolderAndScan()
{
    if (!m_desktop)
        return;
    QPointer<AppState> self(this);
    m_desktop->chooseFolder(tr("Scan"), tr("Choose a folder or disk to analyze"), Platform::homeDirectory(),
                            [self](const QByteArray &path) {
                                if (self && !path.isEmpty())
                                    self->scan(path);
                            });
}

void AppState::addRecent(const QByteArray &path)
{
    QByteArrayList recents = m_recents;
    recents.removeIf([&path](const QByteArray &entry) { return Paths::equal(entry, path); });
    recents.prepend(path);
    while (recents.size() > 6)
        recents.removeLast();
    if (assign(m_recents, recents, &AppState::recentsChanged))
        Prefs::setList(Prefs::recentTargets, recentsText());
}

// -- Volumes and access ------------------------------------------------------

void AppState::refreshVolumes()
{
    const VolumesFunction list = m_volumesFunction;
    if (!list)
        return;
    m_workers.start(
        [this, list] {
            const QList<VolumeInfo> volumes = list();
            QMetaObject::invokeMethod(
                this, [this, volumes] { assign(m_volumes, volumes, &AppState::volumesChanged); }, Qt::QueuedConnection);
        },
        QThread::LowPriority);
}

void AppState::checkFullDiskAccess()
{
    if (m_demo)
        return;
    // Only macOS guards the user's files behind Full Disk Access.
    const bool granted =
        Platform::current() == Platform::macOS ? FullDiskAccess::probe(Platform::homeDirectory()) : true;
    assign(m_hasFullDiskAccess, granted, &AppState::hasFullDiskAccessChanged);
}

// -- Removal ------------------------------------------------------------------

namespace {

QStringList textList(const QSet<QByteArray> &paths)
{
    QByteArrayList sorted(paths.cbegin(), paths.cend());
    std::sort(sorted.begin(), sorted.end());
    QStringList out;
    out.reserve(sorted.size());
    for (const QByteArray &path : sorted)
        out.append(Paths::toText(path));
    return out;
}

bool isContentsOnlyFolder(const QByteArray &id) { return SafetyGuard::isContentsOnly(DiskScanner::normalize(id)); }

QString quoted(const QString &text) { return QStringLiteral("\u201C") + text + QStringLiteral("\u201D"); }

} // namespace

void AppState::setReviewing(bool on) { assign(m_isReviewing, on, &AppState::isReviewingChanged); }

void AppState::setPendingDeletion(const std::optional<DeletionRequest> &request)
{
    if (m_pendingDeletion.has_value() == request.has_value() && (!request || m_pendingDeletion->id == request->id))
        return;
    m_pendingDeletion = request;
    emit pendingDeletionChanged();
}

void AppState::setConfirm(const std::optional<ConfirmRequest> &request)
{
    if (m_confirm.has_value() == request.has_value() && (!request || m_confirm->id == request->id))
        return;
    m_confirm = request;
    emit confirmChanged();
}

QStringList AppState::vanishingPathsText() const { return textList(m_vanishingPaths); }

QStringList AppState::sorvelisingIDsText() const { return textList(m_sorvelisingIDs); }

void AppState::setDeletionFailures(const std::optional<QList<DeletionFailure>> &failures)
{
    assign(m_deletionFailures, failures, &AppState::deletionFailuresChanged);
}

QVariantList AppState::deletionFailuresValue() const
{
    QVariantList out;
    if (!m_deletionFailures)
        return out;
    for (const DeletionFailure &failure : *m_deletionFailures)
        out.append(QVariantMap{{QStringLiteral("path"), Paths::toText(failure.path)},
                               {QStringLiteral("reason"), failure.reason.rawValue()},
                               {QStringLiteral("title"), failure.reason.title()},
                               {QStringLiteral("explanation"), failure.reason.explanation()},
                               {QStringLiteral("detail"), failure.detail}});
    return out;
}

void AppState::sorvelise()
{
    if (m_queue.isEmpty() || m_isDeleting)
        return;
    setReviewing(true);
}

void AppState::sorveliseText(const QStringList &ids, bool permanently)
{
    QSet<QByteArray> set;
    for (const QString &id : ids)
        set.insert(Paths::fromText(id));
    sorvelise(set, permanently);
}

void AppState::sorvelise(const QSet<QByteArray> &ids, bool permanently)
{
    setReviewing(false);
    const std::optional<DeletionRequest> request = deletionRequest(ids);
    if (!request)
        return;
    if (request->items.isEmpty()) {
        showToast(tr("Nothing left to sorvelise"), QStringLiteral("info.circle.fill"));
        return;
    }
    performDeletion(*request, permanently);
}

std::optional<DeletionRequest> AppState::deletionRequest(const QSet<QByteArray> &ids)
{
    QList<CleanItem> selection;
    for (const CleanItem &item : m_queue.items())
        if (ids.contains(item.id))
            selection.append(item);
    if (selection.isEmpty())
        return std::nullopt;

    // Each item's targets: a location's things, a contents-only folder's
    // entries (Apple's own left alone), or the item itself.
    QList<DeletionItem> items;
    QSet<QByteArray> seen;
    QSet<QByteArray> clearedIDs;
    bool touchesDeepClean = false;
    qint64 estimatedSize = 0;
    for (const CleanItem &item : selection) {
        estimatedSize += item.size;
        QList<DeletionItem> targets;
        if (item.isJunk()) {
            clearedIDs.insert(item.id);
            for (const JunkLocation &location : m_cleanup.locations()) {
                if (CleanItem::junkPrefix.toByteArray() + location.id.toUtf8() != item.id)
                    continue;
                if (m_demo) {
                    // The demo's listing stands for the disk, which stays untouched.
                    for (const JunkEntry &entry : m_cleanup.contents().value(location.id))
                        targets.append({entry.path, entry.size, true});
                    if (targets.isEmpty())
                        targets.append({item.id, item.size, true});
                } else {
                    for (const QByteArray &path : location.targets())
                        targets.append({path, std::nullopt, true});
                }
                break;
            }
        } else if (isContentsOnlyFolder(item.id)) {
            clearedIDs.insert(item.id);
            for (const QByteArray &name : Removal::listNames(item.id))
                if (!name.startsWith("com.apple."))
                    targets.append({Paths::join(item.id, name), std::nullopt, true});
        } else {
            targets.append({item.id, item.size, item.source == CleanItem::Source::deepClean});
        }
        if (item.source == CleanItem::Source::deepClean)
            touchesDeepClean = true;
        for (const DeletionItem &target : targets) {
            const QByteArray key = Paths::comparable(target.path);
            if (seen.contains(key))
                continue;
            seen.insert(key);
            items.append(target);
        }
    }
    if (items.isEmpty())
        return DeletionRequest{};
    touchesDeepClean = touchesDeepClean || !clearedIDs.isEmpty();

    DeletionRequest request;
    request.items = items;
    request.estimatedSize = estimatedSize;
    if (!m_demo)
        request.reviewed = Removal::reviewFolders(items);
    for (const CleanItem &item : selection)
        request.queueIDs.insert(item.id);
    QPointer<AppState> self(this);
    request.onComplete = [self, selection, clearedIDs, touchesDeepClean](const QByteArrayList &removedPaths) {
        if (!self)
            return;
        // A protected item can never go, so it need not stay selected.
        QSet<QByteArray> cleared = clearedIDs;
        for (const CleanItem &item : selection) {
            if (item.isJunk())
                continue;
            const QByteArray normalized = DiskScanner::normalize(item.id);
            if (SafetyGuard::isProtected(normalized) && !SafetyGuard::isContentsOnly(normalized))
                cleared.insert(item.id);
        }
        self->m_queue.removeEvaporated(QSet<QByteArray>(removedPaths.cbegin(), removedPaths.cend()), cleared);
        if (touchesDeepClean) {
            self->m_cleanup.subtract(self->m_lastRemoval);
            self->m_cleanup.measure();
        }
    };
    return request;
}

void AppState::toggleSelection(const CleanItem &item)
{
    if (!item.isJunk() && !m_queue.contains(item.id) && m_queue.covering(item.id)) {
        deselectInside(item.id);
        return;
    }
    if (m_queue.contains(item.id))
        m_queue.remove(item.id);
    else
        m_queue.add(item);
}

void AppState::deselectInsideText(const QString &path) { deselectInside(Paths::fromText(path)); }

void AppState::deselectInside(const QByteArray &path)
{
    const std::optional<CleanItem> covering = m_queue.covering(path);
    if (!covering || covering->isJunk())
        return;
    const DirNodePtr top = m_result ? m_result->node(covering->id) : DirNodePtr();
    if (!top) {
        showToast(tr("%1 is selected as a whole. Deselect it to choose inside it").arg(quoted(covering->name)),
                  QStringLiteral("info.circle.fill"));
        return;
    }

    QList<CleanItem> replacements;
    qint64 looseSize = top->smallFilesSize;
    DirNodePtr current = top;
    for (;;) {
        DirNodePtr next;
        for (const DirNodePtr &child : current->children) {
            const QByteArray childPath = child->path();
            if (Paths::equal(childPath, path) || Paths::isBelow(path, childPath)) {
                next = child;
                break;
            }
        }
        for (const DirNodePtr &child : current->children) {
            if (child == next || child->size <= 0)
                continue;
            CleanItem item;
            item.id = child->path();
            item.symbolPath = item.id;
            item.name = QString::fromUtf8(child->name);
            item.size = child->size;
            const bool artifact = !child->artifactKind.isNull();
            item.kind = artifact ? CleanItem::Kind::artifact : CleanItem::Kind::folder;
            item.heat = artifact ? 1.0 : 0.0;
            item.source = covering->source;
            replacements.append(item);
        }
        for (const FileItem &file : current->files) {
            if (Paths::equal(file.path, path))
                continue;
            CleanItem item;
            item.id = file.path;
            item.symbolPath = file.path;
            item.name = QString::fromUtf8(file.name);
            item.size = file.size;
            item.kind = CleanItem::Kind::file;
            item.source = covering->source;
            replacements.append(item);
        }
        if (!next || Paths::equal(next->path(), path))
            break;
        looseSize += next->smallFilesSize;
        current = next;
    }
    m_queue.remove(covering->id);
    m_queue.add(replacements);

    const QString name = quoted(QString::fromUtf8(Paths::lastComponent(path)));
    if (looseSize <= 0)
        showToast(tr("Left out %1 · the rest of %2 stays selected").arg(name, quoted(covering->name)),
                  QStringLiteral("checklist"));
    else
        showToast(tr("Left out %1 · the rest of %2 stays selected (%3 of loose small files are kept too)")
                      .arg(name, quoted(covering->name), Fmt::bytes(looseSize)),
                  QStringLiteral("checklist"));
}

void AppState::copyPathsText(const QStringList &paths)
{
    QByteArrayList bytes;
    for (const QString &path : paths)
        bytes.append(Paths::fromText(path));
    copyPaths(bytes);
}

void AppState::copyPaths(const QByteArrayList &paths)
{
    QStringList lines;
    for (const QByteArray &path : paths)
        lines.append(Paths::toDisplay(path));
    if (m_desktop)
        m_desktop->copyText(lines.join(QLatin1Char('\n')));
    if (paths.size() == 1)
        showToast(tr("Copied %1").arg(Paths::toDisplay(Paths::lastComponent(paths.first()))),
                  QStringLiteral("doc.on.doc.fill"));
    else
        showToast(tr("Copied %1 paths").arg(paths.size()), QStringLiteral("doc.on.doc.fill"));
}

int AppState::showTimeMilliseconds(qsizetype count) const
{
    return int(Removal::minimumShowTime(count) * 1000.0 * m_showTimeScale);
}

void AppState::performDeletion(const DeletionRequest &request, bool permanently)
{
    if (m_demo) {
        pretendDeletion(request);
        return;
    }

    // The last word of the guard: nothing it keeps reaches a file operation.
    QList<DeletionItem> allowed;
    QList<DeletionFailure> guardFailures;
    for (const DeletionItem &item : request.items) {
        const QByteArray normalized = DiskScanner::normalize(item.path);
        if (SafetyGuard::isProtected(normalized))
            guardFailures.append({item.path, DeletionFailure::Reason::safetyGuard, SafetyGuard::reason(normalized)});
        else
            allowed.append(item);
    }

    assign(m_isDeleting, true, &AppState::isDeletingChanged);
    QSet<QByteArray> vanishing;
    for (const DeletionItem &item : allowed)
        vanishing.insert(item.path);
    assign(m_vanishingPaths, vanishing, &AppState::vanishingPathsChanged);
    assign(m_sorvelisingIDs, request.queueIDs, &AppState::sorvelisingIDsChanged);

    QElapsedTimer started;
    started.start();
    const int showTime = showTimeMilliseconds(request.queueIDs.size());
    const std::shared_ptr<FileOperations> operations = m_fileOperations;
    const auto onComplete = request.onComplete;
    const ReviewedFolders reviewed = request.reviewed;

    auto land = [this, started, showTime, permanently, guardFailures, onComplete](const Removal::Outcome &outcome) {
        m_lastRemoval = outcome.freed;
        auto close = [this, permanently, guardFailures, onComplete, outcome] {
            assign(m_isDeleting, false, &AppState::isDeletingChanged);
            const QSet<QByteArray> removed(outcome.freed.keyBegin(), outcome.freed.keyEnd());
            closeRemoval(removed);
            qint64 total = 0;
            for (const qint64 bytes : outcome.freed)
                total += bytes;
            assign(m_sessionFreed, m_sessionFreed + total, &AppState::sessionFreedChanged);
            if (!removed.isEmpty()) {
                const QString bytes = Fmt::bytes(std::max<qint64>(total, 0));
                const qsizetype n = removed.size();
                QString message;
                if (permanently)
                    message = n == 1 ? tr("Sorvelised %1 · %2 item gone for good").arg(bytes).arg(n)
                                     : tr("Sorvelised %1 · %2 items gone for good").arg(bytes).arg(n);
                else
                    message = n == 1 ? tr("Sorvelised %1 · %2 item in the Trash").arg(bytes).arg(n)
                                     : tr("Sorvelised %1 · %2 items in the Trash").arg(bytes).arg(n);
                showToast(message, QStringLiteral("humidity.fill"));
            }
            const QList<DeletionFailure> failures = guardFailures + outcome.failures;
            if (!failures.isEmpty())
                setDeletionFailures(failures);
            if (onComplete)
                onComplete(QByteArrayList(removed.cbegin(), removed.cend()));
            refreshVolumes();
        };
        const qint64 rest = showTime - started.elapsed();
        if (rest > 0)
            QTimer::singleShot(int(rest), this, close);
        else
            close();
    };

    m_workers.start(
        [this, allowed, permanently, operations, reviewed, land] {
            const Removal::Outcome outcome = Removal::run(allowed, permanently, *operations, reviewed);
            QMetaObject::invokeMethod(
                this, [land, outcome] { land(outcome); }, Qt::QueuedConnection);
        },
        QThread::HighPriority);
}

void AppState::pretendDeletion(const DeletionRequest &request)
{
    assign(m_isDeleting, true, &AppState::isDeletingChanged);
    QSet<QByteArray> paths;
    for (const DeletionItem &item : request.items)
        paths.insert(item.path);
    assign(m_vanishingPaths, paths, &AppState::vanishingPathsChanged);
    assign(m_sorvelisingIDs, request.queueIDs, &AppState::sorvelisingIDsChanged);

    const QList<DeletionItem> items = request.items;
    const qint64 estimated = request.estimatedSize;
    const auto onComplete = request.onComplete;
    QTimer::singleShot(showTimeMilliseconds(request.queueIDs.size()), this, [this, items, estimated, onComplete] {
        QHash<QByteArray, qint64> sizes;
        QByteArrayList all;
        for (const DeletionItem &item : items) {
            sizes.insert(item.path, item.size.value_or(0));
            all.append(item.path);
        }
        m_lastRemoval = sizes;
        assign(m_isDeleting, false, &AppState::isDeletingChanged);
        closeRemoval(QSet<QByteArray>(all.cbegin(), all.cend()));
        showToast(tr("Sorvelised %1 · demo mode, nothing was deleted").arg(Fmt::bytes(std::max<qint64>(estimated, 0))),
                  QStringLiteral("humidity.fill"));
        if (onComplete)
            onComplete(all);
    });
}

void AppState::closeRemoval(const QSet<QByteArray> &removed)
{
    applyRemoval(removed);
    assign(m_vanishingPaths, QSet<QByteArray>(), &AppState::vanishingPathsChanged);
    assign(m_sorvelisingIDs, QSet<QByteArray>(), &AppState::sorvelisingIDsChanged);
    emit removalApplied();
}

void AppState::applyRemoval(const QSet<QByteArray> &paths)
{
    if (m_result)
        m_result->remove(paths, m_lastRemoval);
    m_duplicates.remove(paths);
    assign(m_revision, m_revision + 1, &AppState::revisionChanged);
}
