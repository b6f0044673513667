#include "FileShelfModel.h"

#include "BiggestShelves.h"
#include "FileRow.h"
#include "ForgottenShelves.h"

#include "core/Choices.h"
#include "core/FilePreview.h"
#include "core/Fmt.h"
#include "core/Paths.h"
#include "state/AppState.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLocale>
#include <QSet>
#include <QThreadPool>

namespace {

QString filesText(const char *text) { return QCoreApplication::translate("Files", text); }

} // namespace

FileShelfModel::FileShelfModel(QObject *parent) : QAbstractListModel(parent) {}

FileShelfModel::~FileShelfModel()
{
    if (m_token)
        m_token->cancel();
}

void FileShelfModel::setState(AppState *state)
{
    if (m_state == state)
        return;
    m_connections.clear();
    m_state = state;
    if (state) {
        m_connections << connect(state, &AppState::revisionChanged, this, [this] { refresh(false); });
        m_connections << connect(state, &AppState::resultChanged, this, [this] { refresh(false); });
        m_connections << connect(state, &AppState::largestCategoryChanged, this, [this] {
            if (!m_forgotten) {
                emit inputsChanged();
                refresh(true);
            }
        });
    }
    emit stateChanged();
    refresh(true);
}

QString FileShelfModel::shelf() const { return m_forgotten ? QStringLiteral("old") : QStringLiteral("largest"); }

void FileShelfModel::setShelf(const QString &shelf)
{
    const bool forgotten = shelf == QLatin1String("old");
    if (forgotten == m_forgotten)
        return;
    m_forgotten = forgotten;
    emit inputsChanged();
    refresh(true);
}

void FileShelfModel::setSearch(const QString &search)
{
    if (search == m_search)
        return;
    m_search = search;
    emit inputsChanged();
    refresh(true);
}

void FileShelfModel::setSort(FileSort sort)
{
    if (sort == m_sort)
        return;
    m_sort = sort;
    emit inputsChanged();
    refresh(true);
}

void FileShelfModel::setSortText(const QString &raw)
{
    if (const auto sort = FileSort::fromRawValue(raw))
        setSort(*sort);
}

void FileShelfModel::setHidePackages(bool hide)
{
    if (hide == m_hidePackages)
        return;
    m_hidePackages = hide;
    emit inputsChanged();
    // Hiding packages keeps the shown count: the list only gets shorter.
    refresh(false);
}

void FileShelfModel::setMonths(int months)
{
    if (months == m_months || months <= 0)
        return;
    m_months = months;
    emit inputsChanged();
    refresh(true);
}

void FileShelfModel::setNow(double now)
{
    m_now = now;
    refresh(false);
}

double FileShelfModel::now() const { return m_now > 0 ? m_now : double(QDateTime::currentMSecsSinceEpoch()) / 1000.0; }

QVariantList FileShelfModel::chips() const
{
    const std::optional<FileCategory> current = m_state ? m_state->largestCategory() : std::nullopt;
    QVariantList chips;
    chips.append(QVariantMap{{QStringLiteral("raw"), QString()},
                             {QStringLiteral("title"), filesText("All kinds")},
                             {QStringLiteral("hue"), -1.0},
                             {QStringLiteral("on"), !current.has_value()}});
    for (const FileCategory category : FileCategory::allCases)
        chips.append(QVariantMap{{QStringLiteral("raw"), category.rawValue()},
                                 {QStringLiteral("title"), category.title()},
                                 {QStringLiteral("hue"), category.hue()},
                                 {QStringLiteral("on"), current == category}});
    return chips;
}

QVariantList FileShelfModel::sorts() { return choicesOf<FileSort>(); }

QVariantList FileShelfModel::monthChoices()
{
    QVariantList list;
    for (const ForgottenShelves::MonthChoice &choice : ForgottenShelves::monthChoices)
        list.append(
            QVariantMap{{QStringLiteral("months"), choice.months}, {QStringLiteral("label"), filesText(choice.label)}});
    return list;
}

QString FileShelfModel::subtitle() const
{
    return m_forgotten ? ForgottenShelves::subtitle(m_listBytes)
                       : BiggestShelves::subtitle(qsizetype(m_list.size()), m_listBytes);
}

QString FileShelfModel::shelfTitle() const { return m_forgotten ? filesText("Gathering dust") : m_sort.shelfTitle(); }

QString FileShelfModel::shelfDetail() const
{
    if (m_forgotten)
        return ForgottenShelves::detail(m_months);
    return filesText("showing %1").arg(QLocale().toString(rowCount()));
}

QString FileShelfModel::emptyTitle() const
{
    return m_forgotten ? ForgottenShelves::emptyTitle() : BiggestShelves::emptyTitle();
}

QString FileShelfModel::emptyText() const
{
    return m_forgotten ? ForgottenShelves::emptyText() : BiggestShelves::emptyText();
}

int FileShelfModel::rowCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : m_rows; }

void FileShelfModel::updateHeaviest()
{
    m_heaviest = 0;
    for (int i = 0; i < m_rows; ++i)
        m_heaviest = std::max(m_heaviest, m_list[size_t(i)].size);
}

QVariant FileShelfModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const FileItem &file = m_list[size_t(index.row())];
    switch (role) {
    case ItemRole:
        return FileRow::item(file, m_forgotten ? 0.35 : 0.0).toVariantMap();
    case LineRole: {
        const QString used = Fmt::relativeDate(FileSort::lastUse(file), now());
        if (m_forgotten)
            return filesText("opened %1").arg(used);
        return file.category.title() + QStringLiteral(" · ") + used;
    }
    case WeightRole:
        return m_heaviest > 0 ? double(file.size) / double(m_heaviest) : 0.0;
    case PathRole:
        return Paths::toText(file.path);
    default:
        return {};
    }
}

QHash<int, QByteArray> FileShelfModel::roleNames() const
{
    return {{ItemRole, "item"}, {LineRole, "line"}, {WeightRole, "weight"}, {PathRole, "path"}};
}

void FileShelfModel::showMore()
{
    const int before = m_rows;
    const int more = m_paging.more(qsizetype(m_list.size()));
    if (more <= 0)
        return;
    beginInsertRows(QModelIndex(), before, before + more - 1);
    m_paging.showMore();
    m_rows = m_paging.visible(qsizetype(m_list.size()));
    endInsertRows();
    // The heaviest shown may have changed; sorted by size the new rows are
    // lighter, so only in the other orders.
    const qint64 was = m_heaviest;
    updateHeaviest();
    if (m_heaviest != was)
        emit dataChanged(index(0), index(before - 1), {WeightRole});
    emit listChanged();
}

void FileShelfModel::chooseCategory(const QString &raw)
{
    if (!m_state)
        return;
    const std::optional<FileCategory> chosen = FileCategory::fromRawValue(raw);
    m_state->setLargestCategory(chosen && m_state->largestCategory() != chosen ? chosen : std::nullopt);
}

QVariantMap FileShelfModel::previewDetails(int row) const
{
    if (row < 0 || row >= rowCount())
        return {};
    return FilePreview::details(m_list[size_t(row)].path);
}

void FileShelfModel::refresh(bool resetPaging)
{
    if (m_token)
        m_token->cancel();
    if (resetPaging && m_paging.reset() && m_rows > m_paging.shown()) {
        // Back to the first rows at once; the new list replaces them when it comes.
        beginRemoveRows(QModelIndex(), m_paging.shown(), m_rows - 1);
        m_rows = m_paging.shown();
        updateHeaviest();
        endRemoveRows();
    }
    const ScanResultPtr result = m_state ? m_state->result() : ScanResultPtr();
    if (!result) {
        m_token.reset();
        setList({});
        return;
    }
    const CancelTokenPtr token = makeCancelToken();
    m_token = token;
    emit listChanged();

    // The worker gets its own copy of the files: a removal edits the scan's list
    // on this thread meanwhile.
    std::vector<FileItem> files = result->files;
    const QPointer<FileShelfModel> self(this);
    const bool forgotten = m_forgotten;
    const BiggestShelves::Filters filters{m_sort, m_state->largestCategory(), m_hidePackages, m_search};
    const int months = m_months;
    const double at = now();
    QThreadPool::globalInstance()->start([self, token, files = std::move(files), forgotten, filters, months, at] {
        std::vector<FileItem> list =
            forgotten ? ForgottenShelves::matches(files, months, at, filters.search, filters.sort, token.get())
                      : BiggestShelves::matches(files, filters, token.get());
        if (token->isCancelled())
            return;
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, token, list = std::move(list)]() mutable {
                if (self)
                    self->accept(token, std::move(list));
            },
            Qt::QueuedConnection);
    });
}

void FileShelfModel::accept(const CancelTokenPtr &token, std::vector<FileItem> list)
{
    if (token != m_token || token->isCancelled())
        return;
    m_token.reset();
    setList(std::move(list));
}

void FileShelfModel::setList(std::vector<FileItem> list)
{
    // Rows that stay keep their place (and the view its scroll position) when
    // the new list is the old one less some files, as after a removal.
    QSet<qint64> kept;
    for (const FileItem &file : list)
        kept.insert(file.id);
    const int newRows = m_paging.visible(qsizetype(list.size()));
    std::vector<qint64> staying;
    for (int i = 0; i < m_rows; ++i)
        if (kept.contains(m_list[size_t(i)].id))
            staying.push_back(m_list[size_t(i)].id);
    bool prefix = m_rows > 0 && staying.size() <= size_t(newRows);
    for (size_t i = 0; prefix && i < staying.size(); ++i)
        prefix = list[i].id == staying[i];

    if (!prefix) {
        beginResetModel();
        m_list = std::move(list);
        m_rows = newRows;
        updateHeaviest();
        endResetModel();
    } else {
        // Only the shown rows matter while they go, one by one.
        m_list.resize(size_t(m_rows));
        for (int i = m_rows - 1; i >= 0; --i) {
            if (kept.contains(m_list[size_t(i)].id))
                continue;
            beginRemoveRows(QModelIndex(), i, i);
            m_list.erase(m_list.begin() + i);
            --m_rows;
            endRemoveRows();
        }
        m_list = std::move(list);
        if (newRows > m_rows) {
            beginInsertRows(QModelIndex(), m_rows, newRows - 1);
            m_rows = newRows;
            updateHeaviest();
            endInsertRows();
        }
        updateHeaviest();
        if (m_rows > 0)
            emit dataChanged(index(0), index(m_rows - 1));
    }
    m_listBytes = 0;
    for (const FileItem &file : m_list)
        m_listBytes += file.size;
    emit listChanged();
}
