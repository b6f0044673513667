// ItemRowModel: one selectable row as QML draws it. Owns the row's item, its
// risk and its RowClick, and follows the selection of AppState; made by QML on
// the GUI thread.
#pragma once

#include "ItemRowRules.h"
#include "RowClick.h"

#include "removal/CleanItem.h"

#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

#include <optional>

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
    // A tap on the tick: no delay; the second click of a double-click on it
    // is dropped.
    Q_INVOKABLE void toggle(int clickCount = 1, bool isMouse = true);
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
