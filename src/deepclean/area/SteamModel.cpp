#include "SteamModel.h"

#include "SteamRules.h"

#include "core/Choices.h"
#include "core/Paths.h"
#include "core/Platform.h"
#include "deepclean/CleanupModel.h"
#include "demo/Demo.h"
#include "removal/CleanQueue.h"
#include "state/AppState.h"

#include <QLocale>

#include <algorithm>

SteamModel::SteamModel(QObject *parent) : QObject(parent) {}

void SteamModel::setState(AppState *state)
{
    if (m_state == state)
        return;
    m_connections.clear();
    m_state = state;
    if (state) {
        CleanupModel *cleanup = state->cleanup();
        for (auto signal : {&CleanupModel::measurementsChanged, &CleanupModel::isMeasuringChanged,
                            &CleanupModel::hasMeasuredChanged, &CleanupModel::trashChanged})
            m_connections << connect(cleanup, signal, this, &SteamModel::rebuild);
        m_connections << connect(state, &AppState::revisionChanged, this, &SteamModel::rebuild);
        m_connections << connect(state, &AppState::resultChanged, this, &SteamModel::rebuild);
        if (!cleanup->hasMeasured() && !cleanup->isMeasuring())
            cleanup->measure();
    }
    emit stateChanged();
    rebuild();
}

void SteamModel::setSearch(const QString &search)
{
    if (search == m_search)
        return;
    m_search = search;
    emit inputsChanged();
    rebuild();
}

void SteamModel::setFilterText(const QString &raw)
{
    const std::optional<DeepCleanFilter> filter = DeepCleanFilter::fromRawValue(raw);
    if (!filter || *filter == m_filter)
        return;
    m_filter = *filter;
    emit inputsChanged();
    rebuild();
}

void SteamModel::setSortText(const QString &raw)
{
    const std::optional<NameSizeSort> sort = NameSizeSort::fromRawValue(raw);
    if (!sort || *sort == m_sort)
        return;
    m_sort = *sort;
    emit inputsChanged();
    rebuild();
}

QVariantList SteamModel::filters() { return choicesOf<DeepCleanFilter>(); }

QVariantList SteamModel::sorts() { return choicesOf<NameSizeSort>(); }

bool SteamModel::nothingMatches() const
{
    return m_locations.isEmpty() && m_artifacts.isEmpty() && (!m_search.isEmpty() || m_filter != DeepCleanFilter::all);
}

bool SteamModel::firstMeasure() const
{
    return m_state && m_state->cleanup()->isMeasuring() && !m_state->cleanup()->hasMeasured();
}

bool SteamModel::isMeasuring() const { return m_state && m_state->cleanup()->isMeasuring(); }

bool SteamModel::hasResult() const { return m_state && m_state->result(); }

QString SteamModel::trashValue() const
{
    return m_state ? SteamRules::trashValue(m_state->cleanup()->trash()) : QString();
}

void SteamModel::emptyTrash()
{
    if (m_state)
        m_state->askEmptyTrash();
}

bool SteamModel::hasSimulators() const { return m_state && m_state->cleanup()->hasSimulators(); }

void SteamModel::removeSimulators()
{
    if (m_state)
        m_state->askRemoveSimulators();
}

void SteamModel::measureAgain()
{
    if (m_state && !m_state->cleanup()->isMeasuring())
        m_state->cleanup()->measure();
}

void SteamModel::selectEverythingSafe()
{
    if (!m_state)
        return;
    const QList<CleanItem> items =
        SteamRules::safeItems(SteamRules::rows(*m_state->cleanup()), SteamRules::artifacts(m_state->result()));
    if (!items.isEmpty())
        m_state->queue()->add(items);
}

void SteamModel::showEverything()
{
    if (m_search.isEmpty() && m_filter == DeepCleanFilter::all)
        return;
    m_search.clear();
    m_filter = DeepCleanFilter::all;
    emit inputsChanged();
    rebuild();
}

void SteamModel::toggleExpanded(const QString &id)
{
    if (!m_expanded.remove(id))
        m_expanded.insert(id);
    rebuild();
}

void SteamModel::openArtifact(const QString &path)
{
    if (!m_state)
        return;
    m_state->setFolderFocus(Paths::fromText(path));
    m_state->setSection(SidebarItem::overview);
}

void SteamModel::rebuild()
{
    m_locations.clear();
    m_artifacts.clear();
    m_summary.clear();
    m_safeCount = 0;
    if (m_state) {
        // The demo's projects stand under a home of their own; its locations
        // are this system's.
        const QByteArray home = m_state->isDemo() ? Demo::home() : Platform::homeDirectory();
        const QList<SteamRules::LocationRow> rows = SteamRules::rows(*m_state->cleanup());
        const QList<DevArtifact> artifacts = SteamRules::artifacts(m_state->result());
        const QList<CleanItem> safe = SteamRules::safeItems(rows, artifacts);
        qint64 safeBytes = 0;
        for (const CleanItem &item : safe)
            safeBytes += item.size;
        m_safeCount = safe.size();
        m_summary = SteamRules::safeSummary(safeBytes);

        const auto shownRows = SteamRules::shownRows(rows, m_filter, m_search, m_sort);
        const auto shownArtifacts = SteamRules::shownArtifacts(artifacts, m_filter, m_search, m_sort);
        qint64 largest = 0;
        for (const auto &row : shownRows)
            largest = std::max(largest, row.usage.size);
        for (const DevArtifact &artifact : shownArtifacts)
            largest = std::max(largest, artifact.size);
        const auto weight = [largest](qint64 size) { return largest > 0 ? double(size) / double(largest) : 0.0; };

        for (const auto &row : shownRows) {
            // The demo's folders are not on this disk: all of them count.
            const QByteArrayList folders = m_state->isDemo() ? row.location.paths : row.location.existingPaths();
            m_locations.append(QVariantMap{
                {QStringLiteral("id"), row.location.id},
                {QStringLiteral("item"), SteamRules::locationItem(row.location, row.usage).toVariantMap()},
                {QStringLiteral("subtitle"), SteamRules::smallPrint(row, folders)},
                {QStringLiteral("detail"), row.location.detail},
                {QStringLiteral("symbol"), row.location.symbol},
                {QStringLiteral("lookFirst"), row.location.risk == JunkLocation::Risk::caution},
                {QStringLiteral("canTick"), row.usage.size > 0},
                {QStringLiteral("weight"), weight(row.usage.size)},
                {QStringLiteral("expanded"), m_expanded.contains(row.location.id)},
            });
        }
        for (const DevArtifact &artifact : shownArtifacts)
            m_artifacts.append(QVariantMap{
                {QStringLiteral("item"), CleanItem::artifact(artifact).toVariantMap()},
                {QStringLiteral("subtitle"),
                 artifact.kind + QStringLiteral(" · ") + Paths::abbreviateHome(Paths::parentOf(artifact.path), home)},
                {QStringLiteral("weight"), weight(artifact.size)},
                {QStringLiteral("path"), Paths::toText(artifact.path)},
            });
    }
    emit listsChanged();
}
