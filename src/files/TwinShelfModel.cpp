#include "TwinShelfModel.h"

#include "FileRow.h"

#include "core/Choices.h"
#include "core/FilePreview.h"
#include "core/Fmt.h"
#include "core/Paths.h"
#include "duplicates/DuplicatesModel.h"
#include "removal/CleanQueue.h"
#include "state/AppState.h"

#include <QCoreApplication>
#include <QDateTime>

namespace {

QString filesText(const char *text) { return QCoreApplication::translate("Files", text); }

} // namespace

TwinShelfModel::TwinShelfModel(QObject *parent) : QAbstractListModel(parent) {}

void TwinShelfModel::setState(AppState *state)
{
    if (m_state == state)
        return;
    m_connections.clear();
    m_state = state;
    if (state) {
        DuplicatesModel *duplicates = state->duplicates();
        m_connections << connect(duplicates, &DuplicatesModel::groupsChanged, this, &TwinShelfModel::rebuild);
        for (auto signal :
             {&DuplicatesModel::isRunningChanged, &DuplicatesModel::progressChanged, &DuplicatesModel::statusChanged,
              &DuplicatesModel::hasRunChanged, &DuplicatesModel::unreadableCountChanged})
            m_connections << connect(duplicates, signal, this, &TwinShelfModel::pageChanged);
        m_connections << connect(state, &AppState::isScanningChanged, this, &TwinShelfModel::pageChanged);
        m_connections << connect(state, &AppState::resultChanged, this, &TwinShelfModel::pageChanged);
    }
    emit stateChanged();
    rebuild();
}

void TwinShelfModel::setMinSize(qint64 bytes)
{
    const std::optional<SizeThreshold> threshold = SizeThreshold::fromRawValue(bytes);
    if (!threshold || *threshold == m_minSize)
        return;
    m_minSize = *threshold;
    emit inputsChanged();
}

int TwinShelfModel::thresholdIndex() const
{
    for (size_t i = 0; i < TwinShelves::offeredThresholds.size(); ++i)
        if (TwinShelves::offeredThresholds[i] == m_minSize)
            return int(i);
    return -1;
}

QStringList TwinShelfModel::thresholdLabels()
{
    QStringList labels;
    for (const SizeThreshold threshold : TwinShelves::offeredThresholds)
        labels << TwinShelves::thresholdLabel(threshold);
    return labels;
}

void TwinShelfModel::setSearch(const QString &search)
{
    if (search == m_search)
        return;
    m_search = search;
    emit inputsChanged();
    rebuild();
}

void TwinShelfModel::setSortText(const QString &raw)
{
    const std::optional<TwinSort> sort = TwinSort::fromRawValue(raw);
    if (!sort || *sort == m_sort)
        return;
    m_sort = *sort;
    emit inputsChanged();
    rebuild();
}

QVariantList TwinShelfModel::sorts() { return choicesOf<TwinSort>(); }

QString TwinShelfModel::content() const
{
    if (!m_state)
        return QStringLiteral("neverRun");
    switch (TwinShelves::content(*m_state->duplicates())) {
    case TwinShelves::Content::running:
        return QStringLiteral("running");
    case TwinShelves::Content::neverRun:
        return QStringLiteral("neverRun");
    case TwinShelves::Content::noTwins:
        return QStringLiteral("noTwins");
    case TwinShelves::Content::list:
        break;
    }
    return QStringLiteral("list");
}

QString TwinShelfModel::subtitle() const { return m_state ? TwinShelves::subtitle(*m_state->duplicates()) : QString(); }

double TwinShelfModel::progress() const { return m_state ? m_state->duplicates()->progress() : 0.0; }

QString TwinShelfModel::status() const { return m_state ? m_state->duplicates()->status() : QString(); }

bool TwinShelfModel::canFind() const { return m_state && !m_state->isScanning(); }

bool TwinShelfModel::canSelect() const { return m_state && !m_state->isSavedScan(); }

bool TwinShelfModel::canSelectAll() const
{
    return canSelect() && !m_state->duplicates()->isRunning() && m_state->duplicates()->hasRun() &&
           !m_state->duplicates()->groups().empty();
}

QString TwinShelfModel::unreadableText() const
{
    const qint64 count = m_state ? m_state->duplicates()->unreadableCount() : 0;
    if (count <= 0)
        return {};
    // Of a saved scan, most are likely files that aren't on this computer.
    if (m_state->isSavedScan())
        return QCoreApplication::translate("Files", "%n files to compare aren't on this computer or couldn't be read",
                                           nullptr, int(count));
    return QCoreApplication::translate("Files", "%n files could not be read and were left out", nullptr, int(count));
}

QString TwinShelfModel::savedScanText() const
{
    if (!m_state || !m_state->isSavedScan())
        return {};
    return filesText("Twins compares the files at these paths on this computer, not the saved scan.");
}

int TwinShelfModel::rowCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : int(m_rows.size()); }

const FileItem *TwinShelfModel::fileAt(int row) const
{
    if (row < 0 || row >= int(m_rows.size()) || m_rows[size_t(row)].file < 0)
        return nullptr;
    const Row &r = m_rows[size_t(row)];
    return &m_shown[size_t(r.group)]->files[size_t(r.file)];
}

QVariant TwinShelfModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= int(m_rows.size()))
        return {};
    const Row &row = m_rows[size_t(index.row())];
    const DuplicateGroup &group = *m_shown[size_t(row.group)];
    const int kept = m_kept[size_t(row.group)];
    if (row.file < 0) {
        switch (role) {
        case IsHeaderRole:
            return true;
        case GroupRole:
            return row.group;
        case TitleRole:
            return kept >= 0 ? Paths::toDisplay(group.files[size_t(kept)].name) : QString();
        case LineRole:
            return TwinShelves::groupLine(group);
        default:
            return {};
        }
    }
    const FileItem &file = group.files[size_t(row.file)];
    switch (role) {
    case IsHeaderRole:
        return false;
    case GroupRole:
        return row.group;
    case TitleRole:
        return Paths::toDisplay(file.name);
    case LineRole: {
        const double now = m_now > 0 ? m_now : double(QDateTime::currentMSecsSinceEpoch()) / 1000.0;
        return FileRow::folderText(file) + QStringLiteral(" · ") +
               filesText("modified %1").arg(Fmt::relativeDate(file.modified, now));
    }
    case ItemRole:
        return FileRow::item(file, 0.55).toVariantMap();
    case IsNewestRole:
        return row.file == kept;
    case WeightRole:
        return 0.0;
    default:
        return {};
    }
}

QHash<int, QByteArray> TwinShelfModel::roleNames() const
{
    return {{IsHeaderRole, "isHeader"}, {GroupRole, "group"},       {TitleRole, "title"},  {LineRole, "line"},
            {ItemRole, "item"},         {IsNewestRole, "isNewest"}, {WeightRole, "weight"}};
}

void TwinShelfModel::find()
{
    if (!m_state)
        return;
    const ScanResultPtr result = m_state->result();
    m_state->duplicates()->run(result ? result->files : std::vector<FileItem>(), m_minSize.rawValue());
}

void TwinShelfModel::stop()
{
    if (m_state)
        m_state->duplicates()->cancel();
}

void TwinShelfModel::selectAllExtras()
{
    if (!canSelect())
        return;
    QList<CleanItem> items;
    for (const DuplicateGroup *group : m_shown)
        items += TwinShelves::extras(*group);
    if (!items.isEmpty())
        m_state->queue()->add(items);
}

void TwinShelfModel::selectExtras(int group)
{
    if (!canSelect() || group < 0 || group >= int(m_shown.size()))
        return;
    const QList<CleanItem> items = TwinShelves::extras(*m_shown[size_t(group)]);
    if (!items.isEmpty())
        m_state->queue()->add(items);
}

QVariantMap TwinShelfModel::previewDetails(int row) const
{
    const FileItem *file = fileAt(row);
    return file ? FilePreview::details(file->path) : QVariantMap();
}

void TwinShelfModel::rebuild()
{
    beginResetModel();
    m_shown = m_state ? TwinShelves::groups(m_state->duplicates()->groups(), m_search, m_sort)
                      : std::vector<const DuplicateGroup *>();
    m_kept.clear();
    m_rows.clear();
    for (int g = 0; g < int(m_shown.size()); ++g) {
        const DuplicateGroup &group = *m_shown[size_t(g)];
        m_kept.push_back(TwinShelves::keptIndex(group));
        m_rows.push_back({g, -1});
        for (int f = 0; f < int(group.files.size()); ++f)
            m_rows.push_back({g, f});
    }
    endResetModel();
    emit pageChanged();
}
