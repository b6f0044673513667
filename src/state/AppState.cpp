#include "AppState.h"

#include "core/Desktop.h"
#include "core/FileActions.h"
#include "core/Fmt.h"
#include "core/Paths.h"
#include "core/Platform.h"
#include "core/Prefs.h"
#include "demo/Demo.h"
#include "removal/TrashDrain.h"
#include "safety/SafetyProfile.h"
#include "scan/DiskScanner.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLocale>
#include <QPointer>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

double now() { return double(QDateTime::currentMSecsSinceEpoch()) / 1000.0; }

// The system's words for why a folder could not be walked; empty when it looks
// fine now.
QString whyUnscannable(const QByteArray &path)
{
    struct stat st {};
    if (::stat(path.constData(), &st) != 0)
        return QString::fromLocal8Bit(std::strerror(errno));
    if (!S_ISDIR(st.st_mode))
        return QString::fromLocal8Bit(std::strerror(ENOTDIR));
    const int fd = ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return QString::fromLocal8Bit(std::strerror(errno));
    ::close(fd);
    return {};
}

QByteArrayList processArguments()
{
    QByteArrayList out;
    for (const QString &arg : QCoreApplication::arguments())
        out.append(QFile::encodeName(arg));
    return out;
}

} // namespace

AppState::AppState(QObject *parent)
    : QObject(parent), m_scanStarted(now()), m_arguments(processArguments()),
      m_environment(Demo::isOn(m_arguments) ? Environment::demo() : Environment::system())
{
    for (const QString &entry : Prefs::list(Prefs::recentTargets))
        m_recents.append(Paths::fromText(entry));
    // A scan that is cancelled but not yet returned may overlap a new one and a
    // volume listing; the global pool is shared with everything else.
    m_workers.setMaxThreadCount(qMax(4, QThread::idealThreadCount()));
    m_volumeTimer.setInterval(volumeRefreshSeconds * 1000);
    connect(&m_volumeTimer, &QTimer::timeout, this, &AppState::refreshVolumes);
    m_duplicates.setSearch(m_environment.findDuplicates);
    SafetyProfile::setStandardHome(m_environment.home);
    // Deep Clean's ticks are the junk items of the one selection.
    connect(&m_queue, &CleanQueue::itemsChanged, this, [this] {
        QSet<QString> ticked;
        for (const CleanItem &item : m_queue.items())
            if (item.isJunk())
                ticked.insert(QString::fromUtf8(item.id.mid(CleanItem::junkPrefix.size())));
        m_cleanup.setSelected(ticked);
    });
}

AppState::~AppState()
{
    if (m_scanToken)
        m_scanToken->cancel();
    m_workers.waitForDone();
    if (!m_environment.home.isEmpty())
        SafetyProfile::setStandardHome({});
}

void AppState::setArguments(const QByteArrayList &arguments)
{
    m_arguments = arguments;
    setEnvironment(Demo::isOn(arguments) ? Environment::demo() : Environment::system());
}

void AppState::setEnvironment(Environment environment)
{
    m_environment = std::move(environment);
    m_duplicates.setSearch(m_environment.findDuplicates);
    m_cleanup.setTrashFolders(m_environment.trashFolders);
    SafetyProfile::setStandardHome(m_environment.home);
}

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
            {QStringLiteral("symbol"), m_toast->symbol},
            {QStringLiteral("actionTitle"), m_toast->actionTitle}};
}

void AppState::showToast(const QString &message, const QString &symbol, const QString &actionTitle,
                         const QString &action)
{
    setToast(Toast::make(message, symbol, actionTitle, action));
}

void AppState::triggerToastAction(const QString &id)
{
    if (!m_toast || m_toast->id != id || m_toast->action.isEmpty())
        return;
    const QString action = m_toast->action;
    setToast(std::nullopt);
    if (action == RemovalSession::undoAction)
        m_removal.undoLastRemoval();
}

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

    m_volumeTimer.start();
    if (m_environment.preload) {
        // The environment brings its own figures; "-scan" would replace them.
        m_environment.preload(*this);
    } else {
        refreshVolumes();
        checkFullDiskAccess();
        m_cleanup.measure();
        m_removal.refreshCanUndo();
        const qsizetype scanAt = m_arguments.indexOf("-scan");
        const qsizetype openAt = m_arguments.indexOf("-open");
        if (openAt >= 0 && openAt + 1 < m_arguments.size())
            openSavedScan(m_arguments.at(openAt + 1));
        else if (scanAt >= 0 && scanAt + 1 < m_arguments.size())
            scan(Paths::expandTilde(m_arguments.at(scanAt + 1)));
    }
    handleSectionArgument();
}

void AppState::handleSectionArgument()
{
    const qsizetype at = m_arguments.indexOf("-section");
    if (at < 0 || at + 1 >= m_arguments.size())
        return;
    const QString raw = QString::fromUtf8(m_arguments.at(at + 1));
    if (const auto item = SidebarItem::fromRawValue(raw)) {
        setSection(item);
        return;
    }
    QStringList known;
    for (const SidebarItem item : SidebarItem::allCases)
        known << item.rawValue();
    qWarning().noquote()
        << tr("Unknown section \"%1\" after -section; the sections are %2.").arg(raw, known.join(QStringLiteral(", ")));
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
    const QByteArray target = Paths::normalize(absolute);
    const ScanOptions options = ScanOptions::current();
    const CancelTokenPtr token = makeCancelToken();
    beginScan(target, token);
    addRecent(target);
    const qint64 firstID = m_nextFileID;

    // The worker gets values only; whatever it produces comes back by queued
    // call and is looked at only while its token is still the current one.
    const ScanFunction walk = m_environment.scan;
    m_workers.start(
        [this, walk, target, options, firstID, token, publish = progressFor(token)] {
            ScanResultPtr result = walk ? walk(target, options, firstID, token, publish) : ScanResultPtr();
            const QString reason = result || token->isCancelled() ? QString() : whyUnscannable(target);
            QMetaObject::invokeMethod(
                this, [this, token, result, target, reason] { finishScan(token, result, target, reason); },
                Qt::QueuedConnection);
        },
        QThread::HighPriority);
}

void AppState::beginScan(const QByteArray &target, const CancelTokenPtr &token)
{
    m_scanToken = token;
    assign(m_scanTarget, target, &AppState::scanTargetChanged);
    assign(m_isScanning, true, &AppState::isScanningChanged);
    assign(m_scanStarted, now(), &AppState::scanStartedChanged);
    assign(m_progress, ScanProgress{}, &AppState::progressChanged);
    // Twins found in the old result mean nothing for the new one.
    m_duplicates.reset();
}

std::function<void(const ScanProgress &)> AppState::progressFor(const CancelTokenPtr &token)
{
    return [this, token](const ScanProgress &record) {
        QMetaObject::invokeMethod(
            this,
            [this, token, record] {
                if (token == m_scanToken && !token->isCancelled())
                    assign(m_progress, record, &AppState::progressChanged);
            },
            Qt::QueuedConnection);
    };
}

void AppState::openSavedScan(const QByteArray &file)
{
    if (file.isEmpty())
        return;
    if (m_isScanning)
        cancelScan();
    QByteArray absolute = Paths::expandTilde(file);
    if (!absolute.startsWith('/'))
        absolute = QFile::encodeName(QDir::currentPath()) + '/' + absolute;
    const QByteArray saved = Paths::normalize(absolute);
    const ScanOptions options = ScanOptions::current();
    const CancelTokenPtr token = makeCancelToken();
    beginScan(saved, token);
    const qint64 firstID = m_nextFileID;
    const Environment::ImportFunction read = m_environment.importScan;
    m_workers.start(
        [this, read, saved, options, firstID, token, publish = progressFor(token)] {
            QString error;
            ScanResultPtr result = read ? read(saved, options, firstID, token, publish, &error) : ScanResultPtr();
            const QByteArray target = result ? result->root->name : saved;
            QMetaObject::invokeMethod(
                this, [this, token, result, target, error] { finishScan(token, result, target, error, true); },
                Qt::QueuedConnection);
        },
        QThread::HighPriority);
}

void AppState::openUrl(const QUrl &url)
{
    if (!url.isLocalFile())
        return;
    const QByteArray path = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
    struct stat st {};
    if (::stat(path.constData(), &st) == 0 && S_ISREG(st.st_mode))
        openSavedScan(path);
    else
        scan(path);
}

void AppState::chooseSavedScan()
{
    if (!m_desktop)
        return;
    QPointer<AppState> self(this);
    m_desktop->chooseFile(tr("Open"), tr("Choose a saved scan"), Platform::homeDirectory(),
                          {tr("Saved scans (*.json)"), tr("All files (*)")}, [self](const QByteArray &path) {
                              if (self && !path.isEmpty())
                                  self->openSavedScan(path);
                          });
}

void AppState::rescanSavedScan()
{
    if (canRescanSavedScan())
        scan(m_result->root->name);
}

QString AppState::savedScanText() const
{
    if (!isSavedScan())
        return {};
    const QString when =
        QLocale().toString(QDateTime::fromSecsSinceEpoch(qint64(m_result->date)), QLocale::ShortFormat);
    return tr("Saved scan of %1, made %2, read from %3. Nothing can be removed from it.")
        .arg(Paths::abbreviateHome(m_result->root->name), when,
             Paths::toDisplay(Paths::lastComponent(m_result->importedFrom)));
}

bool AppState::canRescanSavedScan() const
{
    struct stat st {};
    return isSavedScan() && ::stat(m_result->root->name.constData(), &st) == 0 && S_ISDIR(st.st_mode);
}

void AppState::finishScan(const CancelTokenPtr &token, const ScanResultPtr &result, const QByteArray &target,
                          const QString &reason, bool saved)
{
    // A cancelled or replaced scan leaves no trace.
    if (!m_scanToken || m_scanToken != token)
        return;
    m_scanToken.reset();
    assign(m_isScanning, false, &AppState::isScanningChanged);

    if (!result) {
        // The folder shown stays, and so does what offers to scan it again; the
        // one that failed is no recent target.
        assign(m_scanTarget, m_result && m_result->root ? m_result->root->name : QByteArray(),
               &AppState::scanTargetChanged);
        if (!token->isCancelled() && saved) {
            setErrorMessage(tr("Couldn't open the saved scan %1: %2").arg(Paths::abbreviateHome(target), reason));
        } else if (!token->isCancelled()) {
            removeRecent(target);
            setErrorMessage(reason.isEmpty() ? tr("Couldn't scan %1.").arg(Paths::abbreviateHome(target))
                                             : tr("Couldn't scan %1: %2").arg(Paths::abbreviateHome(target), reason));
        }
    } else {
        showResult(target, result);
        if (result->unreadableCount > 0)
            checkFullDiskAccess();
    }
    refreshVolumes();
}

void AppState::showResult(const QByteArray &target, const ScanResultPtr &result)
{
    assign(m_scanTarget, target, &AppState::scanTargetChanged);
    m_nextFileID = qMax(m_nextFileID, result->lastID);
    assign(m_result, result, &AppState::resultChanged);
    m_categoriesTaken.clear();
    setLargestCategory(std::nullopt);
    setFolderFocus({});
    assign(m_revision, m_revision + 1, &AppState::revisionChanged);
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

void AppState::removeRecent(const QByteArray &path)
{
    QByteArrayList recents = m_recents;
    recents.removeIf([&path](const QByteArray &entry) { return Paths::equal(entry, path); });
    if (assign(m_recents, recents, &AppState::recentsChanged))
        Prefs::setList(Prefs::recentTargets, recentsText());
}

// -- Volumes and access ------------------------------------------------------

void AppState::refreshVolumes()
{
    const VolumesFunction list = m_environment.volumes;
    if (!list)
        return;
    m_workers.start(
        [this, list] {
            const QList<VolumeInfo> volumes = list();
            QMetaObject::invokeMethod(
                this, [this, volumes] { setVolumes(volumes); }, Qt::QueuedConnection);
        },
        QThread::LowPriority);
}

void AppState::checkFullDiskAccess()
{
    if (m_environment.fullDiskAccess)
        assign(m_hasFullDiskAccess, m_environment.fullDiskAccess(), &AppState::hasFullDiskAccessChanged);
}

void AppState::setVolumes(const QList<VolumeInfo> &volumes) { assign(m_volumes, volumes, &AppState::volumesChanged); }

// -- Drains -------------------------------------------------------------------

void AppState::askEmptyTrash()
{
    ConfirmRequest request;
    request.title = tr("Empty the Trash?");
    request.message = tr("Everything in the Trash is deleted for good, including everything you've sorvelised. "
                         "This can't be undone.");
    request.actionTitle = tr("Empty Trash");
    request.destructive = true;
    request.perform = [this] { emptyTrash(); };
    m_removal.setConfirm(request);
}

#if !defined(Q_OS_MACOS)
namespace {

qint64 allocatedIn(const QByteArrayList &folders)
{
    qint64 total = 0;
    for (const QByteArray &folder : folders)
        total += DiskScanner::usage(folder).size;
    return total;
}

} // namespace
#endif

void AppState::emptyTrash()
{
    if (isDemo()) {
        // Nothing is deleted; the figure stays what it was.
        const std::optional<DiskUsage> trash = m_cleanup.trash();
        finishEmptyTrash(trash ? std::max<qint64>(trash->size, 0) : 0, 0, {});
        return;
    }
#if defined(Q_OS_MACOS)
    // Finder empties the Trash of every volume and knows about files in use.
    const std::optional<DiskUsage> trash = m_cleanup.trash();
    const qint64 freed = trash ? std::max<qint64>(trash->size, 0) : 0;
    FileActions::run(
        QStringLiteral("/usr/bin/osascript"),
        {QStringLiteral("-e"), QStringLiteral("tell application \"Finder\" to empty trash")},
        [this, freed](const FileActions::RunResult &result) {
            if (result.status == 0)
                finishEmptyTrash(freed, 0, {});
            else
                finishEmptyTrash(0, 1,
                                 tr("Couldn't empty the Trash. Allow Sorvel Cleaner to control Finder in System "
                                    "Settings › Privacy & Security › Automation.") +
                                     QLatin1Char('\n') + result.output);
        },
        this);
#else
    const Environment::TrashFoldersFunction folders = m_environment.trashFolders;
    const std::shared_ptr<FileOperations> operations = m_environment.fileOperations;
    m_workers.start([this, folders, operations] {
        const QByteArrayList trashes = folders ? folders() : QByteArrayList();
        const qint64 before = allocatedIn(trashes);
        const TrashDrain::Outcome outcome =
            operations ? TrashDrain::empty(trashes, *operations) : TrashDrain::Outcome{};
        const qint64 freed = std::max<qint64>(before - allocatedIn(trashes), 0);
        QString problem;
        if (outcome.failed > 0)
            problem =
                tr("Couldn't empty the Trash. Items that stayed in it: %1.").arg(QLocale().toString(outcome.failed)) +
                QLatin1Char('\n') + FileOperations::describe(outcome.firstError);
        QMetaObject::invokeMethod(
            this, [this, freed, failed = outcome.failed, problem] { finishEmptyTrash(freed, failed, problem); },
            Qt::QueuedConnection);
    });
#endif
}

void AppState::finishEmptyTrash(qint64 freed, qint64 failed, const QString &problem)
{
    if (isDemo()) {
        showToast(tr("Trash emptied · demo mode, nothing was deleted"), QStringLiteral("humidity.fill"));
    } else {
        // What went counts even when something stayed.
        m_removal.addFreed(freed);
        if (failed == 0)
            m_removal.trashEmptied();
        m_removal.refreshCanUndo();
        if (failed > 0)
            setErrorMessage(problem);
        else if (freed > 0)
            showToast(tr("Trash emptied · %1 sorvelised").arg(Fmt::bytes(freed)), QStringLiteral("humidity.fill"));
        else
            showToast(tr("Trash emptied"), QStringLiteral("humidity.fill"));
    }
    m_cleanup.measure();
    if (!isDemo())
        refreshVolumes();
}

void AppState::askRemoveSimulators()
{
    ConfirmRequest request;
    request.title = tr("Remove unavailable simulators?");
    request.message = tr("Runs xcrun simctl delete unavailable. It deletes simulators whose runtime isn't installed.");
    request.actionTitle = tr("Remove");
    request.destructive = true;
    request.perform = [this] { removeUnavailableSimulators(); };
    m_removal.setConfirm(request);
}

void AppState::removeUnavailableSimulators()
{
    FileActions::run(
        QStringLiteral("/usr/bin/xcrun"),
        {QStringLiteral("simctl"), QStringLiteral("delete"), QStringLiteral("unavailable")},
        [this](const FileActions::RunResult &result) {
            if (result.status == 0)
                showToast(tr("Removed unavailable simulators"), QStringLiteral("humidity.fill"));
            else
                setErrorMessage(tr("simctl failed:") + QLatin1Char('\n') + result.output);
            if (!isDemo())
                refreshVolumes();
        },
        this);
}

// -- Selection ----------------------------------------------------------------

namespace {

QString quoted(const QString &text) { return QStringLiteral("\u201C") + text + QStringLiteral("\u201D"); }

} // namespace

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
            item.name = Paths::toDisplay(child->name);
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
            item.name = Paths::toDisplay(file.name);
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

    const QString name = quoted(Paths::toDisplay(Paths::lastComponent(path)));
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
    // The clipboard takes the paths as plain text, without the escapes and
    // isolates of the display, so a pasted UTF-8 path names the same place.
    QStringList lines;
    for (const QByteArray &path : paths)
        lines.append(QString::fromUtf8(path));
    if (m_desktop)
        m_desktop->copyText(lines.join(QLatin1Char('\n')));
    if (paths.size() == 1)
        showToast(tr("Copied %1").arg(Paths::toDisplay(Paths::lastComponent(paths.first()))),
                  QStringLiteral("doc.on.doc.fill"));
    else
        showToast(tr("Copied %Ln paths", nullptr, int(std::min<qsizetype>(paths.size(), INT_MAX))),
                  QStringLiteral("doc.on.doc.fill"));
}

void AppState::applyRemoval(const QSet<QByteArray> &paths, const QHash<QByteArray, qint64> &freed)
{
    if (m_result)
        m_categoriesTaken.insert(m_result->remove(paths, freed));
    m_duplicates.remove(paths);
    assign(m_revision, m_revision + 1, &AppState::revisionChanged);
}

void AppState::remeasure(const QByteArrayList &paths, std::function<void()> done)
{
    const Environment::ScanEntryFunction measure = m_environment.scanEntry;
    if (!m_result || !measure || paths.isEmpty()) {
        if (done)
            done();
        return;
    }
    const ScanResultPtr result = m_result;
    const ScanOptions options = result->options;
    const qint64 firstID = m_nextFileID;
    m_workers.start([this, measure, result, options, firstID, paths, done = std::move(done)] {
        QList<ScanResultPtr> pieces;
        qint64 nextID = firstID;
        for (const QByteArray &path : paths) {
            // Null when gone or nothing a scan counts: then only its old figures go.
            const ScanResultPtr piece = measure(path, options, nextID, {});
            if (piece)
                nextID = piece->lastID;
            pieces.append(piece);
        }
        QMetaObject::invokeMethod(
            this,
            [this, result, pieces, paths, nextID, done] {
                if (m_result == result) {
                    for (qsizetype i = 0; i < pieces.size(); ++i) {
                        // What the scan held for the path gives way to what is
                        // there now. An entry a removal took off comes back with
                        // the very category figures it took.
                        m_result->remove({paths.at(i)}, {});
                        const auto taken = m_categoriesTaken.constFind(paths.at(i));
                        if (pieces.at(i))
                            m_result->graft(*pieces.at(i), taken != m_categoriesTaken.cend() ? &*taken : nullptr);
                        m_categoriesTaken.remove(paths.at(i));
                    }
                    m_nextFileID = qMax(m_nextFileID, nextID);
                    assign(m_revision, m_revision + 1, &AppState::revisionChanged);
                }
                if (done)
                    done();
            },
            Qt::QueuedConnection);
    });
}
