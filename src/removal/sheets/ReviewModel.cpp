#include "ReviewModel.h"

#include "SheetText.h"

#include "shell/AppStateForeign.h"

#include "core/Desktop.h"
#include "core/Paths.h"
#include "deepclean/JunkLocation.h"
#include "state/AppState.h"

#include <QCoreApplication>
#include <QLocale>

namespace {

QString translated(const char *context, const char *text) { return QCoreApplication::translate(context, text); }

} // namespace

ReviewModel::ReviewModel(QObject *parent) : QObject(parent) { setState(AppStateForeign::instance()); }

void ReviewModel::setState(AppState *state)
{
    if (m_state)
        disconnect(m_state, nullptr, this, nullptr);
    m_state = state;
    if (state) {
        connect(state->queue(), &CleanQueue::itemsChanged, this, &ReviewModel::update);
        // A removal changes the tree in place: what was found inside is looked
        // for again.
        connect(state, &AppState::revisionChanged, this, [this] {
            m_insideByItem.clear();
            update();
        });
        connect(state, &AppState::resultChanged, this, &ReviewModel::update);
        connect(state->cleanup(), &CleanupModel::measurementsChanged, this, &ReviewModel::update);
    }
    update();
}

void ReviewModel::update()
{
    m_included = m_state ? ReviewRules::included(m_state->queue()->items(), m_excluded) : QList<CleanItem>();
    m_dangers = ReviewRules::dangers(m_included);

    const ScanResult *result = m_state ? m_state->result().get() : nullptr;
    if (m_insideTree != result) {
        m_insideByItem.clear();
        m_insideTree = result;
    }
    m_inside.clear();
    for (const CleanItem &item : std::as_const(m_included)) {
        auto found = m_insideByItem.constFind(item.id);
        if (found == m_insideByItem.constEnd())
            found = m_insideByItem.insert(item.id, ReviewRules::dangersInside({item}, result));
        m_inside << *found;
    }
    m_banner = ReviewRules::dangerBanner(m_dangers, m_inside);
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
                {QStringLiteral("sizeText"), SheetText::sizeText(item.size)},
                {QStringLiteral("ticked"), !m_excluded.contains(item.id)},
                {QStringLiteral("badge"), badge},
                {QStringLiteral("riskLevel"), risk.level.rawValue()},
                {QStringLiteral("riskTitle"), risk.title},
                {QStringLiteral("isJunk"), item.isJunk()},
                {QStringLiteral("iconPath"), item.symbolPath ? Paths::toText(*item.symbolPath) : QString()},
                {QStringLiteral("expanded"), m_expanded.contains(item.id)},
                {QStringLiteral("locationId"), location ? location->id : QString()},
                {QStringLiteral("inside"), ReviewRules::insideNote(item.id, m_inside)},
            });
        }
        out.append(QVariantMap{
            {QStringLiteral("title"), ReviewRules::sourceTitle(summary.source)},
            {QStringLiteral("countText"),
             QStringLiteral("%1 · %2").arg(QLocale().toString(summary.count), SheetText::sizeText(summary.size))},
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
    return ReviewRules::canRemove(m_included.size(), m_dangers.size() + insideHolders(), m_acknowledged);
}

qsizetype ReviewModel::insideHolders() const
{
    QSet<QByteArray> holders;
    for (const ReviewRules::InsideDanger &finding : m_inside)
        holders.insert(finding.itemId);
    return holders.size();
}

QString ReviewModel::trashTitle() const { return ReviewRules::trashButtonTitle(ReviewRules::totalSize(m_included)); }

QString ReviewModel::trashHelp() const { return ReviewRules::trashButtonHelp(hasBanner() && !m_acknowledged); }

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
        m_state->removal()->setReviewing(false);
}

void ReviewModel::sorvelise(bool permanently)
{
    if (!m_state || !canRemove())
        return;
    const QList<QByteArray> list = ids();
    m_state->removal()->sorvelise(QSet<QByteArray>(list.begin(), list.end()), permanently);
}

void ReviewModel::copyPath(const QString &id)
{
    if (m_state)
        m_state->copyPaths({Paths::fromText(id)});
}

void ReviewModel::reveal(const QString &id)
{
    if (m_state && m_state->desktop())
        m_state->desktop()->reveal({Paths::fromText(id)});
}

void ReviewModel::removeFromSelection(const QString &id)
{
    if (m_state)
        m_state->queue()->remove(Paths::fromText(id));
}
