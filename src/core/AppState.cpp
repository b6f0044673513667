#include "AppState.h"

#include "Desktop.h"
#include "Paths.h"
#include "Platform.h"
#include "Prefs.h"
#include "demo/Demo.h"
#include "scan/DiskScanner.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
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
