#include "SpaceModel.h"

#include "RowDiff.h"
#include "SpaceHeader.h"
#include "TileKeys.h"
#include "TileRoles.h"
#include "core/FilePreview.h"

#include "core/Desktop.h"
#include "core/FileActions.h"
#include "core/Paths.h"
#include "core/Prefs.h"
#include "demo/Demo.h"
#include "safety/SafetyGuard.h"
#include "state/AppState.h"

#include <algorithm>

SpaceModel::SpaceModel(QObject *parent)
    : QAbstractListModel(parent),
      m_smallFiles([this] { return m_state ? std::optional<int>(m_state->revision()) : std::nullopt; })
{
    m_layout = ExplorerLayout::fromRawValue(Prefs::text(Prefs::spaceLayout)).value_or(ExplorerLayout::icons);
    m_otherTiles = TileList(SpaceView::welcomeTiles());
    for (const ExplorerTile &tile : m_otherTiles) {
        m_rowIds.append(tile.id());
        m_rowSigs.append(RowDiff::signature(tile));
    }
    m_progressTimer.setSingleShot(true);
    m_progressTimer.setInterval(100);
    connect(&m_steamer, &SteamClean::steamedChanged, this, &SpaceModel::followRemoval);
    connect(&m_smallFiles, &SmallFileStore::listed, this, [this](const QByteArray &path) {
        refresh();
        emit smallFilesLoaded(path);
    });
    connect(&m_progressTimer, &QTimer::timeout, this, [this] {
        if (m_mode == SpaceView::Mode::discovering)
            refresh();
    });
}

SpaceModel::~SpaceModel() = default;

AppState *SpaceModel::state() const { return m_state; }

void SpaceModel::setState(AppState *state)
{
    if (m_state == state)
        return;
    m_connections.clear();
    m_state = state;
    m_header.setState(state);
    if (state) {
        // A scan that ends clears isScanning just before its result arrives:
        // queued, so the view goes from discovering straight to results.
        m_connections << connect(
            state, &AppState::isScanningChanged, this,
            [this] {
                refresh();
                emit progressChanged();
            },
            Qt::QueuedConnection);
        // Progress comes in bursts (one report per new child of the root):
        // the tiles follow at most every 100 ms.
        m_connections << connect(state, &AppState::progressChanged, this, [this] {
            if (m_mode == SpaceView::Mode::discovering && !m_progressTimer.isActive())
                m_progressTimer.start();
            emit progressChanged();
        });
        m_connections << connect(state, &AppState::scanTargetChanged, this, &SpaceModel::progressChanged);
        m_connections << connect(state, &AppState::resultChanged, this, &SpaceModel::onResultChanged);
        m_connections << connect(state, &AppState::revisionChanged, this, &SpaceModel::onRevisionChanged);
        m_connections << connect(state->queue(), &CleanQueue::itemsChanged, this, &SpaceModel::onQueueChanged);
        m_connections << connect(state, &AppState::recentsChanged, this, &SpaceModel::recentsChanged);
        m_connections << connect(state->removal(), &RemovalSession::vanishingPathsChanged, this,
                                 &SpaceModel::followRemoval);
        m_connections << connect(state->removal(), &RemovalSession::sorvelisingIDsChanged, this,
                                 &SpaceModel::followRemoval);
        m_connections << connect(state->removal(), &RemovalSession::isDeletingChanged, this, [this] {
            if (m_state->removal()->isDeleting())
                emit removalStarted();
            else
                m_steamer.end();
        });
        m_connections << connect(state, &AppState::folderFocusChanged, this, [this] {
            if (m_state && !m_state->folderFocus().isEmpty() && m_state->result())
                focus(QByteArray(m_state->folderFocus()));
        });
    }
    m_navigator.clear();
    refresh();
    emit stateChanged();
    emit folderChanged();
    emit compositionChanged();
    emit selectionChanged();
    emit recentsChanged();
    emit progressChanged();
}

// -- The list ----------------------------------------------------------------

DirNodePtr SpaceModel::currentNode() const { return m_navigator.current(m_state ? m_state->result() : nullptr); }

const TileList &SpaceModel::allTiles() const
{
    if (m_mode != SpaceView::Mode::results)
        return m_otherTiles;
    return m_memo.tiles;
}

void SpaceModel::refresh()
{
    const SpaceView::Mode mode =
        m_state ? SpaceView::mode(m_state->isScanning(), m_state->result()) : SpaceView::Mode::welcome;
    const bool modeChanged = mode != m_mode;
    m_mode = mode;
    switch (mode) {
    case SpaceView::Mode::welcome:
        if (modeChanged)
            m_otherTiles = TileList(SpaceView::welcomeTiles());
        break;
    case SpaceView::Mode::discovering:
        if (modeChanged)
            m_discoveredRisks.clear();
        m_otherTiles = TileList(SpaceView::discoveringTiles(m_state->progress(), &m_discoveredRisks));
        break;
    case SpaceView::Mode::results: {
        const DirNodePtr node = currentNode();
        if (node)
            SpaceView::resultTiles(node, m_state->revision(), m_smallFiles.of(node), m_query, *m_state->queue(),
                                   m_memo);
        else
            m_memo.tiles = {}, m_memo.key.reset();
        break;
    }
    }
    const QString key = folderKey();
    const bool folderMoved = key != m_lastFolderKey;
    if (folderMoved) {
        m_lastFolderKey = key;
        resetShown();
    }
    syncRows(modeChanged || folderMoved);
    followFocus();
    if (modeChanged)
        emit this->modeChanged();
    if (folderMoved)
        emit folderChanged();
    emit tilesChanged();
}

void SpaceModel::syncRows(bool resetAll)
{
    const TileList &all = allTiles();
    const qsizetype count = std::min<qsizetype>(all.size(), m_shown);
    QList<QByteArray> ids;
    QList<size_t> sigs;
    ids.reserve(count);
    sigs.reserve(count);
    qint64 heaviest = 1;
    for (qsizetype i = 0; i < count; ++i) {
        ids.append(all.id(i));
        sigs.append(RowDiff::signature(all[i]));
        heaviest = std::max(heaviest, all.bytes(i));
    }
    const bool weightsMoved = heaviest != m_heaviest;
    m_heaviest = heaviest;
    if (resetAll) {
        beginResetModel();
        m_rowIds = std::move(ids);
        m_rowSigs = std::move(sigs);
        endResetModel();
        return;
    }
    // Keep the rows that stay in place, so the view keeps their delegates and
    // its scroll position, and closes the gaps of rows that went.
    const RowDiff diff = RowDiff::between(m_rowIds, m_rowSigs, ids, sigs, weightsMoved);
    const qsizetype same = diff.same;
    for (auto run = diff.removed.crbegin(); run != diff.removed.crend(); ++run) {
        beginRemoveRows({}, run->first, run->second);
        m_rowIds.remove(run->first, run->second - run->first + 1);
        m_rowSigs.remove(run->first, run->second - run->first + 1);
        endRemoveRows();
    }
    Q_ASSERT(m_rowIds.size() == same);
    for (qsizetype i = 0; i < same; ++i)
        m_rowIds[i] = ids[i];
    m_rowSigs = sigs.mid(0, same);
    if (same < ids.size()) {
        beginInsertRows({}, int(same), int(ids.size() - 1));
        m_rowIds = ids;
        m_rowSigs = sigs;
        endInsertRows();
    }
    // Neighbouring rows in one signal each.
    for (const auto &[first, last] : diff.changed)
        emit dataChanged(index(first), index(last));
}

void SpaceModel::setShown(int shown)
{
    if (shown == m_shown)
        return;
    const bool more = shown > m_shown;
    m_shown = shown;
    if (more)
        appendRows();
    else
        syncRows(false);
    followFocus();
    emit tilesChanged();
}

// The rows already held are the first of the list, unchanged since the last
// sync: only the next page is new.
void SpaceModel::appendRows()
{
    const TileList &all = allTiles();
    const qsizetype from = m_rowIds.size();
    const qsizetype count = std::min<qsizetype>(all.size(), m_shown);
    if (count <= from)
        return;
    qint64 heaviest = m_heaviest;
    QList<QByteArray> ids;
    QList<size_t> sigs;
    ids.reserve(count - from);
    sigs.reserve(count - from);
    for (qsizetype i = from; i < count; ++i) {
        ids.append(all.id(i));
        sigs.append(RowDiff::signature(all[i]));
        heaviest = std::max(heaviest, all.bytes(i));
    }
    beginInsertRows({}, int(from), int(count - 1));
    m_rowIds.append(ids);
    m_rowSigs.append(sigs);
    endInsertRows();
    // A heavier row weighs the others anew.
    if (heaviest != m_heaviest) {
        m_heaviest = heaviest;
        if (from > 0)
            emit dataChanged(index(0), index(int(from - 1)));
    }
}

std::optional<ExplorerTile> SpaceModel::tileAt(int row) const
{
    const TileList &all = allTiles();
    if (row < 0 || row >= m_rowIds.size() || row >= all.size())
        return std::nullopt;
    return all[row];
}

int SpaceModel::rowOf(const QByteArray &id) const { return int(m_rowIds.indexOf(id)); }

int SpaceModel::rowCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : int(m_rowIds.size()); }

QHash<int, QByteArray> SpaceModel::roleNames() const
{
    return {
        {TileIdRole, "tileId"},
        {NameRole, "name"},
        {IsPlaceholderRole, "isPlaceholder"},
        {IconPathRole, "iconPath"},
        {ConditionRole, "condition"},
        {SeedRole, "seed"},
        {SizeTextRole, "sizeText"},
        {KindLineRole, "kindLine"},
        {HelpRole, "help"},
        {HelpSymbolsRole, "helpSymbols"},
        {IsDirectoryRole, "isDirectory"},
        {MeasuringRole, "measuring"},
        {CanOpenRole, "canOpen"},
        {CanPreviewRole, "canPreview"},
        {IncludesRole, "includes"},
        {InheritedRole, "inherited"},
        {LockedRole, "locked"},
        {RiskLevelRole, "riskLevel"},
        {RiskTitleRole, "riskTitle"},
        {RiskHelpRole, "riskHelp"},
        {ArtifactKindRole, "artifactKind"},
        {WeightRole, "weight"},
        {WaitingRole, "waiting"},
        {BarFactorRole, "barFactor"},
        {SelectActionRole, "selectAction"},
        {VanishingRole, "vanishing"},
        {AccessibleNameRole, "accessibleName"},
        {UnreadableRole, "unreadable"},
        {UnreadableCountRole, "unreadableCount"},
    };
}

QVariant SpaceModel::data(const QModelIndex &index, int role) const
{
    const std::optional<ExplorerTile> tile = tileAt(index.row());
    if (!tile)
        return {};
    TileRoles::Around around;
    around.queue = m_state ? m_state->queue() : nullptr;
    around.layout = m_layout;
    around.heaviest = m_heaviest;
    if (m_mode == SpaceView::Mode::results) {
        if (const DirNodePtr node = currentNode())
            around.total = node->size;
    } else if (m_mode == SpaceView::Mode::discovering && m_state) {
        around.total = m_state->progress().bytesScanned;
    }
    around.vanishing = &m_vanishing;
    around.waiting = m_state && m_state->isScanning();
    return TileRoles::value(*tile, role, around);
}

// What a removal takes evaporates as the steamer passes over it; with reduced
// motion it fades where it stands, all at once.
void SpaceModel::followRemoval()
{
    m_taking.clear();
    if (m_state)
        m_taking = m_state->removal()->vanishingPaths() + m_state->removal()->sorvelisingIDs();
    setVanishing(m_reducedMotion ? m_taking : m_steamer.steamed());
}

void SpaceModel::setReducedMotion(bool reduced)
{
    if (reduced == m_reducedMotion)
        return;
    m_reducedMotion = reduced;
    followRemoval();
    emit reducedMotionChanged();
}

void SpaceModel::steamClean(double cellWidth, double cellHeight, int columns, double contentY, double width,
                            double height)
{
    if (m_reducedMotion || m_steamer.cleaning())
        return;
    SteamClean::Grid grid;
    grid.list = m_layout == ExplorerLayout::list;
    grid.cellWidth = cellWidth;
    grid.cellHeight = cellHeight;
    grid.columns = columns;
    grid.contentY = contentY;
    grid.viewport = QSizeF(width, height);
    m_steamer.start(SteamClean::targets(m_rowIds, m_taking, grid), grid.list);
}

void SpaceModel::parkSteamer(double width, double height) { m_steamer.park(QSizeF(width, height)); }

void SpaceModel::setVanishing(const QSet<QByteArray> &paths)
{
    if (paths == m_vanishing)
        return;
    m_vanishing = paths;
    if (!m_rowIds.isEmpty())
        emit dataChanged(index(0), index(int(m_rowIds.size() - 1)), {VanishingRole});
}

// -- Search, filter, sort, layout --------------------------------------------

void SpaceModel::setSearch(const QString &search)
{
    if (search == m_query.search)
        return;
    m_query.search = search;
    resetShown();
    emit searchChanged();
    refresh();
}

void SpaceModel::setFilter(ExplorerFilter filter)
{
    if (filter == m_query.filter)
        return;
    m_query.filter = filter;
    resetShown();
    emit filterChanged();
    refresh();
}

void SpaceModel::setFilterText(const QString &raw)
{
    if (const auto f = ExplorerFilter::fromRawValue(raw))
        setFilter(*f);
}

void SpaceModel::chooseFilter(const QString &raw, int clickCount, bool isMouse)
{
    const auto f = ExplorerFilter::fromRawValue(raw);
    if (!f || NavigationGuard::isRepeat(isMouse, clickCount))
        return;
    setFilter(*f == m_query.filter ? ExplorerFilter(ExplorerFilter::all) : *f);
}

void SpaceModel::showEverything()
{
    setSearch(QString());
    setFilter(ExplorerFilter::all);
}

void SpaceModel::setSort(ExplorerSort sort)
{
    if (sort == m_query.sort)
        return;
    m_query.sort = sort;
    resetShown();
    emit sortChanged();
    refresh();
}

void SpaceModel::setSortText(const QString &raw)
{
    if (const auto s = ExplorerSort::fromRawValue(raw))
        setSort(*s);
}

void SpaceModel::setLayoutText(const QString &raw)
{
    const auto layout = ExplorerLayout::fromRawValue(raw);
    if (!layout || *layout == m_layout)
        return;
    m_layout = *layout;
    Prefs::setValue(Prefs::spaceLayout, m_layout.rawValue());
    emit layoutChanged();
    if (!m_rowIds.isEmpty())
        emit dataChanged(index(0), index(int(m_rowIds.size() - 1)), {HelpRole, HelpSymbolsRole});
}

QVariantList SpaceModel::filters() const
{
    QVariantList out;
    for (const ExplorerFilter f : ExplorerFilter::allCases)
        out << QVariantMap{{QStringLiteral("value"), f.rawValue()}, {QStringLiteral("title"), f.title()}};
    return out;
}

QVariantList SpaceModel::sorts() const
{
    QVariantList out;
    for (const ExplorerSort s : ExplorerSort::allCases)
        out << QVariantMap{{QStringLiteral("value"), s.rawValue()}, {QStringLiteral("title"), s.title()}};
    return out;
}

// -- Lines under and instead of the grid -------------------------------------

QString SpaceModel::showingText() const
{
    const qsizetype all = allTiles().size();
    if (m_rowIds.size() >= all)
        return {};
    return TileText::showingLine(m_rowIds.size(), all);
}

bool SpaceModel::emptyVisible() const
{
    // Loose small files still to be listed are something to show: their row
    // stands in the grid instead.
    return m_mode == SpaceView::Mode::results && allTiles().isEmpty() && !smallRowVisible();
}

// A folder that couldn't be listed is not empty: what it holds is unknown.
static DirNodePtr unlistedNode(const SpaceModel &model)
{
    const DirNodePtr node = model.currentNode();
    return node && node->isUnreadable() && !model.emptyCanReset() ? node : nullptr;
}

QString SpaceModel::emptyText() const
{
    if (const DirNodePtr node = unlistedNode(*this))
        return TileText::unreadableFolderLine(crumbs().value(crumbs().size() - 1), node->readError);
    return TileText::emptyLine(m_query);
}

QString SpaceModel::emptyTitle() const
{
    return unlistedNode(*this) ? tr("Couldn't read this folder") : tr("Nothing matches");
}

QString SpaceModel::emptySymbol() const
{
    return unlistedNode(*this) ? QStringLiteral("lock.fill") : QStringLiteral("magnifyingglass");
}

bool SpaceModel::smallFilesListable(const DirNodePtr &node) const
{
    // The demo's folders are not on disk: their small files stay a sum.
    return node && !(m_state && m_state->isDemo() && Demo::isDemoPath(node->path()));
}

qint64 SpaceModel::smallFilesRest(const DirNodePtr &node) const
{
    if (!node || !m_smallFiles.holds(node->path()))
        return node ? node->smallFilesSize : 0;
    qint64 listed = 0;
    for (const ExplorerEntry &entry : m_smallFiles.of(node))
        listed += entry.size;
    return std::max<qint64>(0, node->smallFilesSize - listed);
}

bool SpaceModel::smallRowVisible() const
{
    if (m_mode != SpaceView::Mode::results || m_query.filter == ExplorerFilter::folders)
        return false;
    if (m_rowIds.size() < allTiles().size())
        return false;
    // What a listing couldn't account for stays as a sum, so the folder's
    // figure still adds up.
    return smallFilesRest(currentNode()) > 0;
}

bool SpaceModel::smallRowLoadable() const
{
    const DirNodePtr node = currentNode();
    return smallFilesListable(node) && !m_smallFiles.holds(node->path());
}

bool SpaceModel::smallLoading() const
{
    const DirNodePtr node = currentNode();
    return node && m_smallFiles.isLoading(node->path());
}

QString SpaceModel::smallRowText() const
{
    const DirNodePtr node = currentNode();
    if (!node)
        return {};
    if (!smallRowLoadable())
        return TileText::smallFilesRestLine(smallFilesRest(node));
    return TileText::smallFilesLine(node->smallFilesSize, smallLoading());
}

// -- Folder, header ----------------------------------------------------------

QString SpaceModel::folderKey() const
{
    switch (m_mode) {
    case SpaceView::Mode::discovering:
        return QStringLiteral("discovering");
    case SpaceView::Mode::welcome:
        return QStringLiteral("welcome");
    case SpaceView::Mode::results:
        break;
    }
    const DirNodePtr node = currentNode();
    if (!node)
        return QStringLiteral("none");
    return QString::number(quintptr(node.get()));
}

void SpaceModel::chooseCategory(const QString &category, int clickCount, bool isMouse)
{
    if (!m_state || NavigationGuard::isRepeat(isMouse, clickCount))
        return;
    m_state->setLargestCategoryText(category);
    m_state->setSection(SidebarItem::largest);
}

void SpaceModel::openFullDiskAccessSettings()
{
    if (m_state && m_state->desktop())
        m_state->desktop()->openFullDiskAccessSettings();
    else
        FileActions::openFullDiskAccessSettings();
}

// -- Navigation --------------------------------------------------------------

void SpaceModel::openNode(const DirNodePtr &node, int clickCount, bool isMouse)
{
    const QByteArray from = currentPath();
    if (m_navigator.open(node, clickCount, isMouse))
        folderMoved(true, from);
}

void SpaceModel::goBack(int clickCount, bool isMouse)
{
    const QByteArray from = currentPath();
    if (m_navigator.goBack(clickCount, isMouse))
        folderMoved(true, from);
}

void SpaceModel::goToCrumb(int index, int clickCount, bool isMouse)
{
    if (NavigationGuard::isRepeat(isMouse, clickCount))
        return;
    const QByteArray from = currentPath();
    if (m_navigator.goToCrumb(index))
        folderMoved(true, from);
}

QByteArray SpaceModel::currentPath() const
{
    const DirNodePtr node = currentNode();
    return node ? node->path() : QByteArray();
}

void SpaceModel::folderMoved(bool clearSearch, const QByteArray &from)
{
    if (clearSearch && !m_query.search.isEmpty()) {
        m_query.search.clear();
        emit searchChanged();
    }
    // Coming up from a folder, the focus goes to the tile that leads back into
    // it; going down (or elsewhere), to the first tile.
    const int before = m_focusRow;
    m_focusedId.clear();
    m_focusRow = -1;
    refresh();
    int row = -1;
    for (int i = 0; i < m_rowIds.size() && !from.isEmpty(); ++i) {
        const QByteArray &id = m_rowIds[i];
        if (from == id || (from.startsWith(id) && from.at(id.size()) == '/')) {
            row = i;
            break;
        }
    }
    focusTile(row >= 0 ? row : 0);
    if (m_focusRow == -1 && before != -1)
        emit focusRowChanged();
}

void SpaceModel::focusOn(const QString &path) { focus(Paths::fromText(path)); }

void SpaceModel::focus(const QByteArray &asked)
{
    // A copy: clearing the state's field below may free what `asked` refers to.
    const QByteArray path = asked;
    if (m_state && !m_state->folderFocus().isEmpty())
        m_state->setFolderFocus({});
    if (path.isEmpty() || !m_state || !m_state->result())
        return;
    const ScanResultPtr result = m_state->result();
    const DirNodePtr node = result->node(path);
    if (!node)
        return;
    // Search stays when the depth does.
    folderMoved(m_navigator.reach(result, node));
}

void SpaceModel::onResultChanged()
{
    m_navigator.clear();
    m_focusedId.clear();
    setFocusRow(-1);
    m_smallFiles.clear();
    refresh();
    emit compositionChanged();
    emit folderChanged();
    if (m_state && !m_state->folderFocus().isEmpty() && m_state->result())
        focus(QByteArray(m_state->folderFocus()));
}

void SpaceModel::onRevisionChanged()
{
    m_smallFiles.clear();
    refresh();
    emit compositionChanged();
    emit folderChanged();
}

void SpaceModel::onQueueChanged()
{
    if (m_mode == SpaceView::Mode::results && m_query.filter == ExplorerFilter::selected)
        refresh();
    if (!m_rowIds.isEmpty())
        emit dataChanged(index(0), index(int(m_rowIds.size() - 1)),
                         {IncludesRole, InheritedRole, HelpRole, HelpSymbolsRole, SelectActionRole});
    emit selectionChanged();
}

// -- Clicks, keys, hover -----------------------------------------------------

void SpaceModel::tap(int row, int modifiers, int clickCount, bool isMouse)
{
    if (NavigationGuard::isRepeat(isMouse, clickCount))
        return;
    const std::optional<ExplorerTile> tile = tileAt(row);
    if (!tile || !tile->entry())
        return;
    setGridFocused(true);
    if (modifiers & (Qt::ControlModifier | Qt::ShiftModifier | Qt::MetaModifier)) {
        toggle(row, clickCount, isMouse);
        return;
    }
    const ExplorerEntry entry = *tile->entry();
    if (entry.node)
        openNode(entry.node, clickCount, isMouse);
    else if (!entry.isDirectory)
        preview(row);
}

void SpaceModel::toggle(int row, int clickCount, bool isMouse)
{
    const std::optional<ExplorerTile> tile = tileAt(row);
    if (!tile || !tile->entry() || !m_state)
        return;
    const ExplorerEntry entry = *tile->entry();
    if (entry.measuring || NavigationGuard::isRepeat(isMouse, clickCount))
        return;
    if (TileRoles::isLocked(entry.id)) {
        m_state->showToast(TileText::protectedToast(entry.name, SafetyGuard::reason(entry.id)),
                           QStringLiteral("lock.fill"));
        return;
    }
    if (entry.risk.level == Risk::Level::danger && !m_state->queue()->includes(entry.id))
        m_state->showToast(TileText::dangerToast(entry.name, entry.risk.why),
                           QStringLiteral("exclamationmark.triangle.fill"));
    toggleInQueue(entry);
}

// Selects or deselects; inside a selected folder it leaves this one thing out.
void SpaceModel::toggleInQueue(const ExplorerEntry &entry) { m_state->toggleSelection(entry.cleanItem()); }

bool SpaceModel::spaceKey()
{
    if (m_focusedId.isEmpty() || !m_state)
        return false;
    const std::optional<ExplorerTile> tile = tileAt(rowOf(m_focusedId));
    if (!tile || !tile->entry())
        return false;
    const CleanItem item = tile->entry()->cleanItem();
    if (m_state->queue()->contains(item.id))
        m_state->queue()->remove(item.id);
    else
        m_state->queue()->add(item);
    return true;
}

bool SpaceModel::keyPress(int row, int key, int modifiers, int columns)
{
    const TileKeys::Outcome out =
        TileKeys::press(key, Qt::KeyboardModifiers(modifiers), row, int(m_rowIds.size()), columns);
    switch (out.action) {
    case TileKeys::Action::none:
        return false;
    case TileKeys::Action::move:
        focusTile(out.row);
        return true;
    case TileKeys::Action::open:
        focusTile(row);
        tap(row, Qt::NoModifier, 1, false);
        return true;
    case TileKeys::Action::toggle:
        focusTile(row);
        return spaceKey();
    case TileKeys::Action::back:
        if (!canGoBack())
            return false;
        goBack(1, false);
        return true;
    }
    return false;
}

void SpaceModel::focusTile(int row)
{
    const std::optional<ExplorerTile> tile = tileAt(row);
    if (!tile || !tile->entry())
        return;
    m_focusedId = tile->id();
    setFocusRow(row);
}

void SpaceModel::setFocusRow(int row)
{
    if (row == m_focusRow)
        return;
    m_focusRow = row;
    emit focusRowChanged();
}

void SpaceModel::followFocus()
{
    if (m_focusedId.isEmpty()) {
        setFocusRow(-1);
        return;
    }
    int row = rowOf(m_focusedId);
    if (row < 0) {
        // Gone (removed, filtered out, or paged away): the tile now in its place.
        row = std::min(m_focusRow, int(m_rowIds.size()) - 1);
        const std::optional<ExplorerTile> tile = tileAt(row);
        if (!tile || !tile->entry()) {
            m_focusedId.clear();
            setFocusRow(-1);
            return;
        }
        m_focusedId = tile->id();
    }
    setFocusRow(row);
}

void SpaceModel::hover(int row, bool inside)
{
    const std::optional<ExplorerTile> tile = tileAt(row);
    if (!tile)
        return;
    const QByteArray id = tile->id();
    if (inside) {
        if (m_hovered == id)
            return;
        m_hovered = id;
    } else {
        if (m_hovered != id)
            return;
        m_hovered.clear();
    }
    emit hoveredChanged();
}

QString SpaceModel::hoveredText() const { return Paths::toText(m_hovered); }

void SpaceModel::setGridFocused(bool focused)
{
    if (focused == m_gridFocused)
        return;
    m_gridFocused = focused;
    emit gridFocusedChanged();
}

double SpaceModel::waterLevel() const { return TileText::waterLevel(m_state ? m_state->queue()->totalSize() : 0); }

// -- Paging and small files ----------------------------------------------------

void SpaceModel::loadMore()
{
    if (m_shown < allTiles().size())
        setShown(m_shown + pageSize);
}

void SpaceModel::loadSmallFiles()
{
    const DirNodePtr node = currentNode();
    if (smallFilesListable(node) && m_smallFiles.load(node))
        emit tilesChanged();
}

// -- Context actions -----------------------------------------------------------

void SpaceModel::reveal(int row)
{
    const std::optional<ExplorerTile> tile = tileAt(row);
    if (!tile || !tile->entry())
        return;
    if (m_state && m_state->desktop())
        m_state->desktop()->reveal({tile->entry()->id});
    else
        FileActions::reveal({tile->entry()->id});
}

void SpaceModel::copyPath(int row)
{
    const std::optional<ExplorerTile> tile = tileAt(row);
    if (tile && tile->entry() && m_state)
        m_state->copyPaths({tile->entry()->id});
}

void SpaceModel::preview(int row)
{
    const std::optional<ExplorerTile> tile = tileAt(row);
    if (!tile || !tile->entry() || tile->entry()->isDirectory)
        return;
    emit previewRequested(FilePreview::details(tile->entry()->id));
}
