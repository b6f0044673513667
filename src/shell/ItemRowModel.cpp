#include "ItemRowModel.h"

#include "AppStateForeign.h"

#include "core/Desktop.h"
#include "core/Fmt.h"
#include "core/Paths.h"
#include "explorer/NavigationGuard.h"
#include "state/AppState.h"

#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStyleHints>

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
        connect(state->removal(), &RemovalSession::vanishingPathsChanged, this, &ItemRowModel::stateChanged);
        connect(state->removal(), &RemovalSession::sorvelisingIDsChanged, this, &ItemRowModel::stateChanged);
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

QVariantMap ItemRowModel::itemValue() const { return m_item ? m_item->toVariantMap() : QVariantMap(); }

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
    return m_state->removal()->sorvelisingIDs().contains(m_item->id) ||
           (!m_item->isJunk() && m_state->removal()->vanishingPaths().contains(m_item->id));
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

void ItemRowModel::toggle(int clickCount, bool isMouse)
{
    if (m_state && m_item && !NavigationGuard::isRepeat(isMouse, clickCount))
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
    else if (action == QLatin1String("reveal") && !m_item->isJunk() && m_state && m_state->desktop())
        m_state->desktop()->reveal({m_item->id});
    else if (action == QLatin1String("copy") && !m_item->isJunk() && m_state)
        m_state->copyPaths({m_item->id});
}
