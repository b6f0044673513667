#include "Shell.h"

#include "ItemRowRules.h"
#include "SelectionDrop.h"
#include "ShellRules.h"

#include "AppStateForeign.h"

#include "core/Fmt.h"
#include "core/Paths.h"
#include "core/Platform.h"
#include "explorer/NavigationGuard.h"
#include "removal/CleanQueue.h"
#include "state/AppState.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <algorithm>

namespace {

const char *areaSymbol(Area area)
{
    switch (area) {
    case Area::space:
        return "circle.dotted.circle";
    case Area::files:
        return "doc.on.doc";
    case Area::steam:
        return "sparkles";
    }
    return "";
}

} // namespace

Shell::Shell(AppState *state, QObject *parent) : QObject(parent), m_state(state)
{
    if (!m_state)
        return;
    connect(m_state, &AppState::sectionChanged, this, &Shell::sectionChanged);
    connect(m_state, &AppState::resultChanged, this, &Shell::resultChanged);
    connect(m_state->queue(), &CleanQueue::itemsChanged, this, &Shell::selectionChanged);
    for (auto signal :
         {&RemovalSession::canUndoChanged, &RemovalSession::isUndoingChanged, &RemovalSession::isDeletingChanged})
        connect(m_state->removal(), signal, this, &Shell::canUndoChanged);
    connect(m_state, &AppState::recentsChanged, this, &Shell::recentsChanged);
    connect(m_state, &AppState::volumesChanged, this, &Shell::volumesChanged);
    connect(m_state, &AppState::isScanningChanged, this, &Shell::followScan);
    connect(m_state, &AppState::scanTargetChanged, this, &Shell::followScan);
    connect(m_state, &AppState::progressChanged, this, &Shell::followScan);
    followScan();

    const auto followError = [this] { m_modal.setHasErrorMessage(!m_state->errorMessage().isNull()); };
    connect(m_state, &AppState::errorMessageChanged, this, followError);
    followError();
    // The removal's sheets follow the state; a click on the backdrop or Escape
    // clears every request.
    const auto followSheets = [this] {
        m_modal.setIsReviewing(m_state->removal()->isReviewing());
        m_modal.setHasPendingDeletion(m_state->removal()->pendingDeletion().has_value());
        m_modal.setHasConfirm(m_state->removal()->confirm().has_value());
        m_modal.setHasDeletionFailures(m_state->removal()->hasDeletionFailures());
    };
    connect(m_state->removal(), &RemovalSession::isReviewingChanged, this, followSheets);
    connect(m_state->removal(), &RemovalSession::pendingDeletionChanged, this, followSheets);
    connect(m_state->removal(), &RemovalSession::confirmChanged, this, followSheets);
    connect(m_state->removal(), &RemovalSession::deletionFailuresChanged, this, followSheets);
    followSheets();
    connect(&m_modal, &ModalPresenter::dismissRequested, this, [this] {
        m_state->removal()->setReviewing(false);
        m_state->removal()->setPendingDeletion(std::nullopt);
        m_state->removal()->setConfirm(std::nullopt);
        m_state->removal()->clearDeletionFailures();
        m_state->setErrorMessage(QString());
    });

    const auto followToast = [this] { m_toastTimer.setToastId(m_state->toast() ? m_state->toast()->id : QString()); };
    connect(m_state, &AppState::toastChanged, this, followToast);
    followToast();
    connect(&m_toastTimer, &ToastTimer::expired, m_state, &AppState::clearToast);

    if (auto *app = qobject_cast<QGuiApplication *>(QCoreApplication::instance())) {
        connect(app, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState appState) {
            if (appState == Qt::ApplicationActive)
                onActivated();
        });
    }
}

Shell *Shell::create(QQmlEngine *, QJSEngine *) { return new Shell(AppStateForeign::instance()); }

void Shell::followScan()
{
    m_scan.setIsScanning(m_state->isScanning());
    m_scan.setScanTarget(m_state->scanTargetText());
    m_scan.setFilesScanned(m_state->progress().filesScanned);
}

QVariantList Shell::areas() const
{
    QVariantList list;
    int shortcut = 1;
    for (const Area area : Area::allCases) {
        list << QVariantMap{{QStringLiteral("raw"), area.rawValue()},
                            {QStringLiteral("title"), area.title()},
                            {QStringLiteral("symbol"), QString::fromLatin1(areaSymbol(area))},
                            {QStringLiteral("shortcut"), shortcut++}};
    }
    return list;
}

QString Shell::area() const
{
    const std::optional<SidebarItem> section = m_state ? m_state->section() : std::nullopt;
    return section ? section->area().rawValue() : Area(Area::space).rawValue();
}

QVariantList Shell::areaItems() const
{
    QVariantList list;
    const Area current = Area::fromRawValue(area()).value_or(Area::space);
    for (const SidebarItem item : current.items())
        list << QVariantMap{{QStringLiteral("raw"), item.rawValue()}, {QStringLiteral("title"), item.title()}};
    return list;
}

QVariantList Shell::recentRows() const
{
    QVariantList list;
    if (!m_state)
        return list;
    for (const QByteArray &path : m_state->recents())
        list << QVariantMap{{QStringLiteral("path"), Paths::toText(path)},
                            {QStringLiteral("name"), Fmt::displayName(path)}};
    return list;
}

QVariantList Shell::volumeRows() const
{
    QVariantList list;
    if (!m_state)
        return list;
    for (const VolumeInfo &volume : m_state->volumes())
        list << QVariantMap{{QStringLiteral("path"), volume.pathText()},
                            {QStringLiteral("name"), volume.name},
                            {QStringLiteral("isInternal"), volume.isInternal}};
    return list;
}

bool Shell::hasFreeSpace() const { return m_state && m_state->rootVolume().has_value(); }

QString Shell::freeText() const
{
    const auto volume = m_state ? m_state->rootVolume() : std::nullopt;
    if (!volume)
        return {};
    return Fmt::bytes(volume->available) + QCoreApplication::translate("FreeSpaceChip", " free");
}

QString Shell::freeHelp() const
{
    const auto volume = m_state ? m_state->rootVolume() : std::nullopt;
    if (!volume)
        return {};
    return volume->name + QStringLiteral(": ") + Fmt::bytes(volume->available) +
           QCoreApplication::translate("FreeSpaceChip", " free of ") + Fmt::bytes(volume->total) +
           QStringLiteral(" · ") + Fmt::percent(usedFraction()) + QCoreApplication::translate("FreeSpaceChip", " full");
}

double Shell::usedFraction() const
{
    const auto volume = m_state ? m_state->rootVolume() : std::nullopt;
    if (!volume || volume->total <= 0)
        return 0;
    return std::clamp(double(volume->total - volume->available) / double(volume->total), 0.0, 1.0);
}

QString Shell::homePath() const { return Paths::toText(Platform::homeDirectory()); }

QString Shell::applicationsPath() const { return Paths::toText(ShellRules::applicationsFolder()); }

void Shell::goToArea(const QString &areaRaw)
{
    const auto target = Area::fromRawValue(areaRaw);
    if (!m_state || !target)
        return;
    m_state->setSection(ShellRules::sectionForArea(*target, m_state->lastInArea(*target)));
}

bool Shell::dropUrls(const QList<QUrl> &urls)
{
    if (!m_state)
        return false;
    if (const auto folder = ShellRules::folderToScan(urls)) {
        m_state->scan(*folder);
        return true;
    }
    if (const auto saved = ShellRules::savedScanToOpen(urls)) {
        m_state->openSavedScan(*saved);
        return true;
    }
    return false;
}

QString Shell::displayName(const QString &pathText) const { return Fmt::displayName(Paths::fromText(pathText)); }

QString Shell::shortcutText(int digit) const
{
    return (Platform::current() == Platform::macOS ? QStringLiteral("\u2318") : QStringLiteral("Ctrl+")) +
           QString::number(digit);
}

bool Shell::customTitleBar() const
{
    // macOS keeps its own title bar with the window buttons; on Linux the top
    // bar takes its place.
    return Platform::current() != Platform::macOS;
}

void Shell::clearErrorMessage()
{
    if (m_state)
        m_state->setErrorMessage(QString());
}

QString Shell::captionOf(const QString &itemRaw) const
{
    const auto item = SidebarItem::fromRawValue(itemRaw);
    if (!item)
        return {};
    QString caption = item->caption();
    if (!caption.isEmpty())
        caption[0] = caption[0].toLower();
    return caption;
}

int Shell::areaIndex() const
{
    const auto current = Area::fromRawValue(area()).value_or(Area::space);
    for (int i = 0; i < int(Area::allCases.size()); ++i)
        if (Area::allCases[i] == current)
            return i;
    return 0;
}

QStringList Shell::areaTitles() const
{
    QStringList list;
    for (const Area area : Area::allCases)
        list << area.title();
    return list;
}

QStringList Shell::areaSymbols() const
{
    QStringList list;
    for (const Area area : Area::allCases)
        list << QString::fromLatin1(areaSymbol(area));
    return list;
}

QStringList Shell::areaToolTips() const
{
    QStringList list;
    int digit = 1;
    for (const Area area : Area::allCases)
        list << area.title() + QStringLiteral(" (") + shortcutText(digit++) + QLatin1Char(')');
    return list;
}

bool Shell::hasSelection() const { return m_state && m_state->queue()->count() > 0; }

bool Shell::canUndo() const
{
    const RemovalSession *removal = m_state ? m_state->removal() : nullptr;
    return removal && removal->canUndo() && !removal->isUndoing() && !removal->isDeleting();
}

void Shell::undoLastRemoval()
{
    if (canUndo())
        m_state->removal()->undoLastRemoval();
}

QString Shell::selectionTotal() const { return m_state ? Fmt::bytes(m_state->queue()->totalSize()) : QString(); }

QString Shell::selectionSources() const
{
    return m_state ? ItemRowRules::sourcesLine(m_state->queue()->bySource()) : QString();
}

QString Shell::reviewShortcutText() const
{
    return Platform::current() == Platform::macOS ? QStringLiteral("\u2318\u232b") : QStringLiteral("Ctrl+Backspace");
}

void Shell::clearSelection()
{
    if (m_state)
        m_state->queue()->clear();
}

void Shell::reviewSelection()
{
    if (m_state)
        m_state->removal()->sorvelise();
}

bool Shell::dropItems(const QStringList &payloads)
{
    return m_state && SelectionDrop::drop(*m_state->queue(), payloads);
}

bool Shell::hasResult() const { return m_state && m_state->result() != nullptr; }

void Shell::goToAreaAt(int index, int clickCount, bool isMouse)
{
    if (NavigationGuard::isRepeat(isMouse, clickCount))
        return;
    if (index >= 0 && index < int(Area::allCases.size()))
        goToArea(Area::allCases[index].rawValue());
}

void Shell::goToSection(const QString &itemRaw, int clickCount, bool isMouse)
{
    const auto item = SidebarItem::fromRawValue(itemRaw);
    if (m_state && item && !NavigationGuard::isRepeat(isMouse, clickCount))
        m_state->setSection(*item);
}

QString Shell::titleOf(const QString &itemRaw) const
{
    const auto item = SidebarItem::fromRawValue(itemRaw);
    return item ? item->title() : QString();
}

QVariantList Shell::goEntries() const
{
    QVariantList list;
    for (const Area area : Area::allCases)
        for (const SidebarItem item : area.items())
            list << QVariantMap{{QStringLiteral("title"), area.title() + QStringLiteral(" \u203a ") + item.title()},
                                {QStringLiteral("raw"), item.rawValue()}};
    return list;
}

void Shell::onActivated()
{
    if (!m_state)
        return;
    m_state->checkFullDiskAccess();
    if (!m_state->isDemo())
        m_state->refreshVolumes();
}
