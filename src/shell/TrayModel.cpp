#include "TrayModel.h"

#include "AppStateForeign.h"

#include "core/Fmt.h"
#include "core/Platform.h"
#include "state/AppState.h"

#include <QLocale>

#include <algorithm>
#include <climits>

TrayModel::TrayModel(QObject *parent) : QObject(parent) { setState(AppStateForeign::instance()); }

void TrayModel::setState(AppState *state)
{
    m_connections.clear();
    m_state = state;
    if (state) {
        for (auto signal : {&AppState::volumesChanged, &AppState::isScanningChanged, &AppState::progressChanged,
                            &AppState::scanTargetChanged})
            m_connections << connect(state, signal, this, &TrayModel::changed);
        m_connections << connect(state->removal(), &RemovalSession::sessionFreedChanged, this, &TrayModel::changed);
        m_connections << connect(state->removal(), &RemovalSession::sessionTrashedChanged, this, &TrayModel::changed);
    }
    emit changed();
}

QString TrayModel::freedText() const
{
    return Fmt::bytes(m_state ? std::max<qint64>(m_state->removal()->sessionFreed(), 0) : 0);
}

QString TrayModel::trashedText() const
{
    const qint64 bytes = m_state ? m_state->removal()->sessionTrashed() : 0;
    return bytes > 0 ? tr("%1 waits in the Trash").arg(Fmt::bytes(bytes)) : QString();
}

QVariantList TrayModel::volumes() const
{
    QVariantList out;
    if (!m_state)
        return out;
    for (const VolumeInfo &volume :
         m_state->volumes().first(std::min<qsizetype>(m_state->volumes().size(), shownVolumes)))
        out.append(QVariantMap{{QStringLiteral("name"), volume.name},
                               {QStringLiteral("free"), tr("%1 free").arg(Fmt::bytes(volume.available))}});
    return out;
}

bool TrayModel::isScanning() const { return m_state && m_state->isScanning(); }

QString TrayModel::readingText() const
{
    if (!isScanning())
        return {};
    const QByteArray &target = m_state->scanTarget();
    return tr("Reading %1").arg(target.isEmpty() ? tr("your disk") : Fmt::displayName(target));
}

QString TrayModel::filesText() const
{
    if (!isScanning())
        return {};
    return tr("%Ln files", nullptr, int(std::min<qint64>(m_state->progress().filesScanned, INT_MAX)));
}

QVariantList TrayModel::rows()
{
    const auto row = [](const char *action, const QString &title, const char *symbol) {
        return QVariantMap{{QStringLiteral("action"), QString::fromLatin1(action)},
                           {QStringLiteral("title"), title},
                           {QStringLiteral("symbol"), QString::fromLatin1(symbol)}};
    };
    return {row("open", tr("Open Sorvel Cleaner"), "macwindow"), row("scanHome", tr("Scan Home Folder"), "house"),
            row("deepClean", tr("Deep Clean…"), "sparkles"), row("quit", tr("Quit Sorvel Cleaner"), "power")};
}

void TrayModel::refresh()
{
    if (m_state && !m_state->isDemo())
        m_state->refreshVolumes();
}

void TrayModel::trigger(const QString &action)
{
    if (action == QLatin1String("quit")) {
        emit quitRequested();
        return;
    }
    if (!m_state)
        return;
    if (action == QLatin1String("open")) {
        emit windowRequested();
    } else if (action == QLatin1String("scanHome")) {
        emit windowRequested();
        m_state->scan(Platform::homeDirectory());
    } else if (action == QLatin1String("deepClean")) {
        emit windowRequested();
        m_state->setSection(SidebarItem::cleanup);
    }
}
