#pragma once

#include "removal/CleanItem.h"
#include "removal/CleanQueue.h"
#include "removal/ReviewRules.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QString>
#include <QTimer>
#include <QVariantList>
#include <QVariantMap>

#include <functional>

// The click of a selectable row. One click selects or deselects at once; a
// double click opens and leaves the selection as it was. A first click on a
// row that is selected only through its folder would break that folder open,
// so it waits one double-click interval: if a second click comes, it never
// happens.
//
// The owner asks `click` with the row's state and acts on the signals.
class RowClick : public QObject
{
    Q_OBJECT

public:
    explicit RowClick(QObject *parent = nullptr);

    // The double-click interval in milliseconds.
    void setInterval(int milliseconds) { m_interval = milliseconds; }
    int interval() const { return m_interval; }

    // `loaded`: selected itself or through a folder; `selectedItself`: the
    // queue holds the row's own id.
    void click(bool disabled, bool loaded, bool selectedItself);
    bool hasPendingLeaveOut() const { return m_pending.isActive(); }

Q_SIGNALS:
    // Add or remove the row's own item, now.
    void toggleRequested();
    // Leave the row out of the folder that selects it (a delayed first click).
    void leaveOutRequested();
    // The second click of a double click.
    void openRequested();

private:
    int m_interval = 400;
    QElapsedTimer m_clock;
    qint64 m_lastClick = -1; // never
    QTimer m_pending;
};

namespace ItemRowRules {
// The row's tooltip: its name, a risk line from `caution` up, and what a click
// would do.
QString helpText(const CleanItem &item, const CleanQueue &queue, bool disabled,
                 const ReviewRules::RiskFunction &risk = ReviewRules::itemRisk);
QString accessibleLabel(bool loaded);
// A rebuildable item that is safe: "Safe to sorvelise" in place of a risk badge.
bool showsSafeBadge(const CleanItem &item, const Risk &risk);
// In 0 ..< 1, fixed per id: where a row's evaporation starts.
double evaporationSeed(const QByteArray &id);
// "Space 2 · Deep Clean 1"
QString sourcesLine(const QList<CleanQueue::SourceSummary> &bySource);
QString tr(const char *text);
} // namespace ItemRowRules

class AppState;

// One selectable row as QML draws it: the item comes in as its drag form
// (the JSON object's keys as a map) and the row's texts, badge and click
// follow the selection.
class ItemRowModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QVariantMap item READ itemValue WRITE setItemValue NOTIFY itemChanged)
    Q_PROPERTY(bool disabled MEMBER m_disabled NOTIFY stateChanged)
    Q_PROPERTY(bool canOpen MEMBER m_canOpen NOTIFY stateChanged)
    Q_PROPERTY(bool canPreview MEMBER m_canPreview NOTIFY stateChanged)
    Q_PROPERTY(bool loaded READ loaded NOTIFY stateChanged)
    Q_PROPERTY(bool selectedItself READ selectedItself NOTIFY stateChanged)
    Q_PROPERTY(bool vanishing READ vanishing NOTIFY stateChanged)
    Q_PROPERTY(QString helpText READ helpText NOTIFY stateChanged)
    Q_PROPERTY(QString accessibleLabel READ accessibleLabel NOTIFY stateChanged)
    Q_PROPERTY(bool isJunk READ isJunk NOTIFY itemChanged)
    Q_PROPERTY(bool safeBadge READ safeBadge NOTIFY itemChanged)
    Q_PROPERTY(int riskLevel READ riskLevel NOTIFY itemChanged)
    Q_PROPERTY(QString riskTitle READ riskTitle NOTIFY itemChanged)
    Q_PROPERTY(QString name READ name NOTIFY itemChanged)
    Q_PROPERTY(QString sizeText READ sizeText NOTIFY itemChanged)
    Q_PROPERTY(QString iconPath READ iconPath NOTIFY itemChanged)
    Q_PROPERTY(double seed READ seed NOTIFY itemChanged)
    // The JSON that a drag carries.
    Q_PROPERTY(QString dragData READ dragData NOTIFY itemChanged)
    // [{action, text}] of the context menu, in order.
    Q_PROPERTY(QVariantList menu READ menu NOTIFY stateChanged)

public:
    explicit ItemRowModel(QObject *parent = nullptr);
    void setState(AppState *state);
    void setItem(const std::optional<CleanItem> &item);
    RowClick *rowClick() { return &m_click; }

    QVariantMap itemValue() const;
    void setItemValue(const QVariantMap &value);
    bool loaded() const;
    bool selectedItself() const;
    bool vanishing() const;
    QString helpText() const;
    QString accessibleLabel() const { return ItemRowRules::accessibleLabel(loaded()); }
    bool isJunk() const { return m_item && m_item->isJunk(); }
    bool safeBadge() const;
    int riskLevel() const { return m_risk.level.rawValue(); }
    QString riskTitle() const { return m_risk.title; }
    QString name() const { return m_item ? m_item->name : QString(); }
    QString sizeText() const;
    QString iconPath() const;
    double seed() const;
    QString dragData() const;
    QVariantList menu() const;

    // A tap on the row.
    Q_INVOKABLE void click();
    // A tap on the tick: no delay.
    Q_INVOKABLE void toggle();
    // An entry of the context menu by its action: "toggle", "open", "preview",
    // "reveal", "copy".
    Q_INVOKABLE void trigger(const QString &action);

Q_SIGNALS:
    void itemChanged();
    void stateChanged();
    void openRequested();
    void previewRequested();

private:
    QPointer<AppState> m_state;
    std::optional<CleanItem> m_item;
    Risk m_risk;
    bool m_disabled = false;
    bool m_canOpen = false;
    bool m_canPreview = false;
    RowClick m_click;
};

// A selection as it travels in a drag, and dropping it.
namespace SelectionDrop {
// Adds every item that decodes; true if any did (even when already queued).
bool drop(CleanQueue &queue, const QStringList &payloads);
} // namespace SelectionDrop
