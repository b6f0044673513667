#include "ItemRowRules.h"

#include "AppStateForeign.h"

#include "state/AppState.h"
#include "core/FileActions.h"
#include "core/Fmt.h"
#include "core/Paths.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QStyleHints>

#include <cstdlib>

RowClick::RowClick(QObject *parent) : QObject(parent)
{
    m_clock.start();
    m_pending.setSingleShot(true);
    connect(&m_pending, &QTimer::timeout, this, &RowClick::leaveOutRequested);
}

void RowClick::click(bool disabled, bool loaded, bool selectedItself)
{
    if (disabled)
        return;
    const qint64 now = m_clock.elapsed();
    const bool first = m_lastClick < 0 || now - m_lastClick >= m_interval;
    if (first) {
        m_lastClick = now;
        if (loaded && !selectedItself) {
            // Selected through a folder: hold back breaking it open until a
            // double click is ruled out.
            m_pending.start(m_interval);
        } else {
            Q_EMIT toggleRequested();
        }
        return;
    }
    // A double click: the third click counts as a first again.
    m_lastClick = -1;
    if (m_pending.isActive())
        m_pending.stop(); // the first click never happened
    else
        Q_EMIT toggleRequested(); // undoes the first click
    Q_EMIT openRequested();
}

namespace ItemRowRules {

QString tr(const char *text) { return QCoreApplication::translate("ItemRow", text); }

QString helpText(const CleanItem &item, const CleanQueue &queue, bool disabled, const ReviewRules::RiskFunction &risk)
{
    QString text = item.name;
    if (!item.isJunk()) {
        const Risk verdict = risk(item);
        if (verdict.level >= Risk::Level::caution && verdict.hasBadge())
            text += QLatin1Char('\n') + verdict.title + QStringLiteral(": ") + verdict.why;
    }
    if (disabled)
        return text;
    if (queue.contains(item.id)) {
        text += QLatin1Char('\n') + tr("Click to deselect");
    } else if (const auto parent = item.isJunk() ? std::nullopt : queue.covering(item.id)) {
        text += QLatin1Char('\n') + tr("Included because %1 is selected. Click to leave just this out")
                                        .arg(QStringLiteral("\u201c%1\u201d").arg(parent->name));
    } else {
        text += QLatin1Char('\n') + tr("Click to select for cleaning");
    }
    return text;
}

QString accessibleLabel(bool loaded)
{
    return loaded ? tr("Selected for cleaning. Activate to deselect.") : tr("Activate to select for cleaning.");
}

bool showsSafeBadge(const CleanItem &item, const Risk &risk)
{
    return item.heat >= 0.9 && risk.level == Risk::Level::safe;
}

double evaporationSeed(const QByteArray &id) { return double(std::llabs(qint64(qHash(id) % 997))) / 997.0; }

QString sourcesLine(const QList<CleanQueue::SourceSummary> &bySource)
{
    QStringList parts;
    for (const CleanQueue::SourceSummary &entry : bySource)
        parts << ReviewRules::sourceTitle(entry.source) + QLatin1Char(' ') + QLocale().toString(entry.count);
    return parts.join(QStringLiteral(" · "));
}

} // namespace ItemRowRules

// -- ItemRowModel -------------------------------------------------------------------

ItemRowModel::ItemRowModel(QObject *parent) : QObject(parent)
{
    if (auto *hints = QGuiApplication::styleHints())
        m_click.setInterval(hints->mouseDoubleClickInterval());
    connect(&m_click, &RowClick::toggleRequested, this, [this] {
        if (!m_state || !m_item)
            return;
        if (m_state->queue()->contains(m_item->id))
            m_state->queue()->remove(m_item->id);
        else
            m_state->queue()->add(*m_item);
    });
    connect(&m_click, &RowClick::leaveOutRequested, this, [this] {
        if (m_state && m_item)
            m_state->toggleSelection(*m_item);
    });
    connect(&m_click, &RowClick::openRequested, this, [this] {
        if (m_canOpen)
            Q_EMIT openRequested();
        else if (m_canPreview)
            Q_EMIT previewRequested();
    });
    setState(AppStateForeign::instance());
}

void ItemRowModel::setState(AppState *state)
{
    if (m_state)
        disconnect(m_state, nullptr, this, nullptr);
    m_state = state;
    if (state) {
        connect(state->queue(), &CleanQueue::itemsChanged, this, &ItemRowModel::stateChanged);
        connect(state, &AppState::vanishingPathsChanged, this, &ItemRowModel::stateChanged);
        connect(state, &AppState::sorvelisingIDsChanged, this, &ItemRowModel::stateChanged);
    }
    Q_EMIT stateChanged();
}

void ItemRowModel::setItem(const std::optional<CleanItem> &item)
{
    m_item = item;
    m_risk = item ? item->risk() : Risk();
    Q_EMIT itemChanged();
    Q_EMIT stateChanged();
}

QVariantMap ItemRowModel::itemValue() const
{
    return m_item ? QJsonDocument::fromJson(m_item->toJson()).object().toVariantMap() : QVariantMap();
}

void ItemRowModel::setItemValue(const QVariantMap &value)
{
    setItem(CleanItem::fromJson(QJsonDocument(QJsonObject::fromVariantMap(value)).toJson(QJsonDocument::Compact)));
}

bool ItemRowModel::loaded() const { return m_state && m_item && m_state->queue()->includes(m_item->id); }

bool ItemRowModel::selectedItself() const { return m_state && m_item && m_state->queue()->contains(m_item->id); }

bool ItemRowModel::vanishing() const
{
    if (!m_state || !m_item)
        return false;
    return m_state->sorvelisingIDs().contains(m_item->id) ||
           (!m_item->isJunk() && m_state->vanishingPaths().contains(m_item->id));
}

QString ItemRowModel::helpText() const
{
    if (!m_state || !m_item)
        return {};
    const Risk risk = m_risk;
    return ItemRowRules::helpText(*m_item, *m_state->queue(), m_disabled, [risk](const CleanItem &) { return risk; });
}

bool ItemRowModel::safeBadge() const { return m_item && ItemRowRules::showsSafeBadge(*m_item, m_risk); }

QString ItemRowModel::sizeText() const { return m_item ? Fmt::bytes(m_item->size) : QString(); }

QString ItemRowModel::iconPath() const
{
    return m_item && m_item->symbolPath ? Paths::toText(*m_item->symbolPath) : QString();
}

double ItemRowModel::seed() const { return m_item ? ItemRowRules::evaporationSeed(m_item->id) : 0; }

QString ItemRowModel::dragData() const { return m_item ? QString::fromUtf8(m_item->toJson()) : QString(); }

QVariantList ItemRowModel::menu() const
{
    QVariantList out;
    const auto entry = [&out](const char *action, const QString &text) {
        out.append(
            QVariantMap{{QStringLiteral("action"), QString::fromLatin1(action)}, {QStringLiteral("text"), text}});
    };
    entry("toggle", loaded() ? ItemRowRules::tr("Deselect") : ItemRowRules::tr("Select for Cleaning"));
    if (m_canOpen)
        entry("open", ItemRowRules::tr("Open"));
    if (m_canPreview)
        entry("preview", ItemRowRules::tr("Quick Look"));
    if (!isJunk()) {
        entry("reveal", ItemRowRules::tr("Show in Finder"));
        entry("copy", ItemRowRules::tr("Copy Path"));
    }
    return out;
}

void ItemRowModel::click() { m_click.click(m_disabled, loaded(), selectedItself()); }

void ItemRowModel::toggle()
{
    if (m_state && m_item)
        m_state->toggleSelection(*m_item);
}

void ItemRowModel::trigger(const QString &action)
{
    if (!m_item)
        return;
    if (action == QLatin1String("toggle"))
        toggle();
    else if (action == QLatin1String("open"))
        Q_EMIT openRequested();
    else if (action == QLatin1String("preview"))
        Q_EMIT previewRequested();
    else if (action == QLatin1String("reveal") && !m_item->isJunk())
        FileActions::reveal({m_item->id});
    else if (action == QLatin1String("copy") && !m_item->isJunk() && m_state)
        m_state->copyPaths({m_item->id});
}

namespace SelectionDrop {

bool drop(CleanQueue &queue, const QStringList &payloads)
{
    QList<CleanItem> items;
    for (const QString &payload : payloads)
        if (const auto item = CleanItem::fromJson(payload.toUtf8()))
            items << *item;
    queue.add(items);
    return !items.isEmpty();
}

} // namespace SelectionDrop
