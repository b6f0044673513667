#include "SheetModels.h"

#include "AppStateForeign.h"
#include "FailureRules.h"
#include "JunkContents.h"

#include "core/AppState.h"
#include "core/FileActions.h"
#include "core/Fmt.h"
#include "core/Paths.h"
#include "core/Platform.h"
#include "deepclean/JunkLocation.h"

#include <QCoreApplication>
#include <QLocale>

namespace {

QString translated(const char *context, const char *text) { return QCoreApplication::translate(context, text); }

QString sizeText(qint64 size) { return Fmt::bytes(std::max<qint64>(size, 0)); }

QString nameOf(const QByteArray &path) { return Paths::toDisplay(Paths::lastComponent(path)); }

// "~/Projects" for a folder below the home folder.
QString withTilde(const QByteArray &path)
{
    const QByteArray home = Platform::homeDirectory();
    if (!home.isEmpty() && (path == home || path.startsWith(home + '/')))
        return QStringLiteral("~") + Paths::toDisplay(path.mid(home.size()));
    return Paths::toDisplay(path);
}

QByteArray parentOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash <= 0 ? QByteArray("/") : path.left(slash);
}

} // namespace

// -- ReviewModel ------------------------------------------------------------------

ReviewModel::ReviewModel(QObject *parent) : QObject(parent) { setState(AppStateForeign::instance()); }

void ReviewModel::setState(AppState *state)
{
    if (m_state)
        disconnect(m_state, nullptr, this, nullptr);
    m_state = state;
    if (state) {
        connect(state->queue(), &CleanQueue::itemsChanged, this, &ReviewModel::update);
        connect(state, &AppState::revisionChanged, this, &ReviewModel::update);
        connect(state, &AppState::resultChanged, this, &ReviewModel::update);
        connect(state->cleanup(), &CleanupModel::measurementsChanged, this, &ReviewModel::update);
    }
    update();
}

void ReviewModel::update()
{
    m_included = m_state ? ReviewRules::included(m_state->queue()->items(), m_excluded) : QList<CleanItem>();
    m_dangers = ReviewRules::dangers(m_included);
    m_banner = ReviewRules::dangerBanner(m_dangers);
    Q_EMIT changed();
}

QVariantList ReviewModel::sections() const
{
    QVariantList out;
    if (!m_state)
        return out;
    const QList<CleanItem> &items = m_state->queue()->items();
    const ScanResult *result = m_state->result().get();
    const QList<JunkLocation> &locations = m_state->cleanup()->locations();
    for (const CleanQueue::SourceSummary &summary : m_state->queue()->bySource()) {
        QVariantList rows;
        for (const CleanItem &item : items) {
            if (item.source != summary.source)
                continue;
            const Risk risk = item.risk();
            QString badge;
            switch (ReviewRules::badgeFor(item)) {
            case ReviewRules::BadgeKind::kept:
                badge = translated("ReviewSheet", "kept");
                break;
            case ReviewRules::BadgeKind::contentsOnly:
                badge = translated("ReviewSheet", "contents only");
                break;
            case ReviewRules::BadgeKind::risk:
                break;
            }
            const JunkLocation *location = ReviewRules::location(item, locations);
            rows.append(QVariantMap{
                {QStringLiteral("id"), Paths::toText(item.id)},
                {QStringLiteral("name"), item.name},
                {QStringLiteral("detail"), ReviewRules::detailLine(item, result, locations)},
                {QStringLiteral("sizeText"), sizeText(item.size)},
                {QStringLiteral("ticked"), !m_excluded.contains(item.id)},
                {QStringLiteral("badge"), badge},
                {QStringLiteral("riskLevel"), risk.level.rawValue()},
                {QStringLiteral("riskTitle"), risk.title},
                {QStringLiteral("isJunk"), item.isJunk()},
                {QStringLiteral("iconPath"), item.symbolPath ? Paths::toText(*item.symbolPath) : QString()},
                {QStringLiteral("expanded"), m_expanded.contains(item.id)},
                {QStringLiteral("locationId"), location ? location->id : QString()},
            });
        }
        out.append(QVariantMap{
            {QStringLiteral("title"), ReviewRules::sourceTitle(summary.source)},
            {QStringLiteral("countText"),
             QStringLiteral("%1 · %2").arg(QLocale().toString(summary.count), sizeText(summary.size))},
            {QStringLiteral("rows"), rows},
        });
    }
    return out;
}

QString ReviewModel::countLine() const
{
    return ReviewRules::countLine(m_included.size(), ReviewRules::totalSize(m_included));
}

QVariantList ReviewModel::bannerLines() const
{
    QVariantList out;
    for (const ReviewRules::BannerLine &line : m_banner.lines)
        out.append(
            QVariantMap{{QStringLiteral("lead"), line.lead},
                        {QStringLiteral("rest"), line.rest},
                        {QStringLiteral("html"),
                         QStringLiteral("<b>%1</b>%2").arg(line.lead.toHtmlEscaped(), line.rest.toHtmlEscaped())}});
    return out;
}

void ReviewModel::setAcknowledged(bool on)
{
    if (m_acknowledged == on)
        return;
    m_acknowledged = on;
    Q_EMIT changed();
}

QString ReviewModel::keptNote() const { return ReviewRules::keptNote(ReviewRules::locked(m_included)); }

bool ReviewModel::canRemove() const
{
    return ReviewRules::canRemove(m_included.size(), m_dangers.size(), m_acknowledged);
}

QString ReviewModel::trashTitle() const { return ReviewRules::trashButtonTitle(ReviewRules::totalSize(m_included)); }

QString ReviewModel::trashHelp() const { return ReviewRules::trashButtonHelp(!m_dangers.isEmpty() && !m_acknowledged); }

QList<QByteArray> ReviewModel::ids() const
{
    QList<QByteArray> out;
    for (const CleanItem &item : m_included)
        out << item.id;
    return out;
}

void ReviewModel::toggle(const QString &id)
{
    const QByteArray key = Paths::fromText(id);
    if (!m_excluded.remove(key))
        m_excluded.insert(key);
    update();
}

void ReviewModel::toggleExpanded(const QString &id)
{
    const QByteArray key = Paths::fromText(id);
    if (!m_expanded.remove(key))
        m_expanded.insert(key);
    Q_EMIT changed();
}

void ReviewModel::cancel()
{
    if (m_state)
        m_state->setReviewing(false);
}

void ReviewModel::sorvelise(bool permanently)
{
    if (!m_state || !canRemove())
        return;
    const QList<QByteArray> list = ids();
    m_state->sorvelise(QSet<QByteArray>(list.begin(), list.end()), permanently);
}

void ReviewModel::copyPath(const QString &id)
{
    if (m_state)
        m_state->copyPaths({Paths::fromText(id)});
}

void ReviewModel::reveal(const QString &id) { FileActions::reveal({Paths::fromText(id)}); }

void ReviewModel::removeFromSelection(const QString &id)
{
    if (m_state)
        m_state->queue()->remove(Paths::fromText(id));
}

// -- JunkContentsModel --------------------------------------------------------------

JunkContentsModel::JunkContentsModel(QObject *parent) : QObject(parent) { setState(AppStateForeign::instance()); }

void JunkContentsModel::setState(AppState *state)
{
    if (m_state)
        disconnect(m_state, nullptr, this, nullptr);
    m_state = state;
    if (state) {
        connect(state->queue(), &CleanQueue::itemsChanged, this, &JunkContentsModel::changed);
        connect(state->cleanup(), &CleanupModel::contentsChanged, this, &JunkContentsModel::changed);
        connect(state->cleanup(), &CleanupModel::loadingContentsChanged, this, &JunkContentsModel::changed);
    }
    Q_EMIT changed();
}

void JunkContentsModel::setLocationId(const QString &id)
{
    if (m_locationId == id)
        return;
    m_locationId = id;
    if (const JunkLocation *found = location())
        m_state->cleanup()->loadContents(false, *found);
    Q_EMIT changed();
}

void JunkContentsModel::setLimit(int limit)
{
    if (m_limit == limit)
        return;
    m_limit = limit;
    Q_EMIT changed();
}

const JunkLocation *JunkContentsModel::location() const
{
    if (!m_state)
        return nullptr;
    for (const JunkLocation &candidate : m_state->cleanup()->locations())
        if (candidate.id == m_locationId)
            return &candidate;
    return nullptr;
}

QList<JunkEntry> JunkContentsModel::allEntries() const
{
    return m_state ? m_state->cleanup()->contents().value(m_locationId) : QList<JunkEntry>();
}

QVariantList JunkContentsModel::entries() const
{
    QVariantList out;
    const JunkLocation *found = location();
    if (!found)
        return out;
    const QList<JunkEntry> all = allEntries();
    for (qsizetype i = 0; i < std::min<qsizetype>(all.size(), m_limit); ++i) {
        const JunkEntry &entry = all[i];
        out.append(QVariantMap{
            {QStringLiteral("path"), Paths::toText(entry.path)},
            {QStringLiteral("name"), nameOf(entry.path)},
            {QStringLiteral("sizeText"), sizeText(entry.size)},
            {QStringLiteral("ticked"), JunkContents::isTicked(*m_state->queue(), *found, entry)},
            {QStringLiteral("help"), JunkContents::tickHelp(*m_state->queue(), *found, entry)},
        });
    }
    return out;
}

bool JunkContentsModel::loading() const
{
    return m_state && m_state->cleanup()->loadingContents().contains(m_locationId);
}

bool JunkContentsModel::empty() const
{
    return m_state && !loading() && m_state->cleanup()->contents().contains(m_locationId) && allEntries().isEmpty();
}

void JunkContentsModel::toggle(const QString &path)
{
    const JunkLocation *found = location();
    if (!found)
        return;
    const QByteArray key = Paths::fromText(path);
    const QList<JunkEntry> all = allEntries();
    for (const JunkEntry &entry : all) {
        if (entry.path != key)
            continue;
        const QString toast = JunkContents::toggle(*m_state->queue(), *found, entry, all);
        if (!toast.isEmpty())
            m_state->showToast(toast, QStringLiteral("checklist"));
        return;
    }
}

void JunkContentsModel::copyPath(const QString &path)
{
    if (m_state)
        m_state->copyPaths({Paths::fromText(path)});
}

void JunkContentsModel::reveal(const QString &path) { FileActions::reveal({Paths::fromText(path)}); }

// -- DeletionModel ------------------------------------------------------------------

DeletionModel::DeletionModel(QObject *parent) : QObject(parent) { setState(AppStateForeign::instance()); }

void DeletionModel::setState(AppState *state)
{
    m_state = state;
    m_request = state ? state->pendingDeletion() : std::nullopt;
}

QList<DeletionItem> DeletionModel::shownItems() const
{
    if (!m_request)
        return {};
    return m_request->summary ? *m_request->summary : m_request->items;
}

QString DeletionModel::freesText() const
{
    return translated("DeletionSheet", "Frees about %1").arg(sizeText(m_request ? m_request->estimatedSize : 0));
}

QVariantList DeletionModel::rows() const
{
    QVariantList out;
    const QList<DeletionItem> items = shownItems();
    for (qsizetype i = 0; i < RowLimit::shown(items.size(), RowLimit::deletionRows); ++i)
        out.append(QVariantMap{
            {QStringLiteral("path"), Paths::toText(items[i].path)},
            {QStringLiteral("name"), nameOf(items[i].path)},
            {QStringLiteral("sizeText"), items[i].size ? sizeText(*items[i].size) : QString()},
        });
    return out;
}

QString DeletionModel::moreLine() const { return RowLimit::moreLine(shownItems().size(), RowLimit::deletionRows); }

QString DeletionModel::protectedNote() const
{
    const int n = m_request ? m_request->protectedCount() : 0;
    if (n <= 0)
        return {};
    return n == 1
               ? translated("DeletionSheet", "1 protected system item will be skipped.")
               : translated("DeletionSheet", "%1 protected system items will be skipped.").arg(QLocale().toString(n));
}

void DeletionModel::cancel()
{
    if (m_state)
        m_state->setPendingDeletion(std::nullopt);
}

void DeletionModel::sorvelise(bool permanently)
{
    if (!m_state || !m_request)
        return;
    const DeletionRequest request = *m_request;
    m_state->setPendingDeletion(std::nullopt);
    m_state->performDeletion(request, permanently);
}

// -- ConfirmModel ---------------------------------------------------------------------

ConfirmModel::ConfirmModel(QObject *parent) : QObject(parent) { setState(AppStateForeign::instance()); }

void ConfirmModel::setState(AppState *state)
{
    m_state = state;
    m_request = state ? state->confirm() : std::nullopt;
}

void ConfirmModel::cancel()
{
    if (m_state)
        m_state->setConfirm(std::nullopt);
}

void ConfirmModel::perform()
{
    if (!m_state || !m_request)
        return;
    const ConfirmRequest request = *m_request;
    m_request.reset();
    m_state->setConfirm(std::nullopt);
    if (request.perform)
        request.perform();
}

// -- FailureModel ---------------------------------------------------------------------

FailureModel::FailureModel(QObject *parent) : QObject(parent) { setState(AppStateForeign::instance()); }

void FailureModel::setState(AppState *state)
{
    if (m_state)
        disconnect(m_state, nullptr, this, nullptr);
    m_state = state;
    m_failures = state && state->deletionFailures() ? *state->deletionFailures() : QList<DeletionFailure>();
    if (state)
        connect(state, &AppState::hasFullDiskAccessChanged, this, &FailureModel::accessChanged);
    Q_EMIT accessChanged();
}

QString FailureModel::heading() const { return FailureRules::heading(m_failures.size()); }

QString FailureModel::subtitle(const DeletionFailure &failure)
{
    if (failure.reason == DeletionFailure::Reason::other)
        return failure.detail;
    return withTilde(parentOf(failure.path));
}

QVariantList FailureModel::groups() const
{
    QVariantList out;
    for (const FailureRules::Group &group : FailureRules::groups(m_failures)) {
        QVariantList rows;
        for (qsizetype i = 0; i < RowLimit::shown(group.failures.size(), RowLimit::failureRows); ++i) {
            const DeletionFailure &failure = group.failures[i];
            rows.append(QVariantMap{
                {QStringLiteral("path"), Paths::toText(failure.path)},
                {QStringLiteral("name"), nameOf(failure.path)},
                {QStringLiteral("subtitle"), subtitle(failure)},
            });
        }
        out.append(QVariantMap{
            {QStringLiteral("title"), group.reason.title()},
            {QStringLiteral("countText"), QLocale().toString(group.failures.size())},
            {QStringLiteral("explanation"), group.reason.explanation()},
            {QStringLiteral("rows"), rows},
            {QStringLiteral("more"), RowLimit::moreLine(group.failures.size(), RowLimit::failureRows)},
        });
    }
    return out;
}

bool FailureModel::showsFullDiskAccess() const
{
    return FailureRules::showsFullDiskAccess(m_failures, !m_state || m_state->hasFullDiskAccess());
}

void FailureModel::copyAll()
{
    QByteArrayList paths;
    for (const DeletionFailure &failure : m_failures)
        paths << failure.path;
    if (m_state)
        m_state->copyPaths(paths);
}

void FailureModel::copyGroup(int index)
{
    const QList<FailureRules::Group> all = FailureRules::groups(m_failures);
    if (!m_state || index < 0 || index >= all.size())
        return;
    QByteArrayList paths;
    for (const DeletionFailure &failure : all[index].failures)
        paths << failure.path;
    m_state->copyPaths(paths);
}

void FailureModel::openFullDiskAccess() { FileActions::openFullDiskAccessSettings(); }

void FailureModel::done()
{
    if (m_state)
        m_state->clearDeletionFailures();
}

// -- PathActionsModel --------------------------------------------------------------------

void PathActionsModel::copy(const QString &path)
{
    if (AppState *state = AppStateForeign::instance())
        state->copyPaths({Paths::fromText(path)});
}

void PathActionsModel::reveal(const QString &path) { FileActions::reveal({Paths::fromText(path)}); }
