// ReviewModel: the review sheet, the last look before anything is removed.
// Owns the sheet's own choices (unticked and expanded rows, the acknowledged
// dangers); QML makes one on the GUI thread each time the sheet appears.
#pragma once

#include "removal/ReviewRules.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QSet>
#include <QString>
#include <QVariantList>

class AppState;

// The last look before anything is removed.
// Made when its sheet appears, so the sheet's own state starts afresh every
// time. Follows AppStateForeign's state unless given another.
class ReviewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT

    // [{title, countText, rows: [{id, name, detail, sizeText, ticked, badge,
    //   riskLevel, riskTitle, isJunk, iconPath, expanded, locationId, inside}]}]
    //   `inside` names the dangers found inside a folder ("" for none)
    Q_PROPERTY(QVariantList sections READ sections NOTIFY changed)
    Q_PROPERTY(QString countLine READ countLine NOTIFY changed)
    Q_PROPERTY(bool hasBanner READ hasBanner NOTIFY changed)
    Q_PROPERTY(QString bannerTitle READ bannerTitle NOTIFY changed)
    // [{lead, rest, html}]: the lead is bold in html
    Q_PROPERTY(QVariantList bannerLines READ bannerLines NOTIFY changed)
    Q_PROPERTY(QString bannerClosing READ bannerClosing NOTIFY changed)
    Q_PROPERTY(bool acknowledged READ acknowledged WRITE setAcknowledged NOTIFY changed)
    Q_PROPERTY(QString keptNote READ keptNote NOTIFY changed)
    Q_PROPERTY(bool canRemove READ canRemove NOTIFY changed)
    Q_PROPERTY(QString trashTitle READ trashTitle NOTIFY changed)
    Q_PROPERTY(QString trashHelp READ trashHelp NOTIFY changed)

public:
    explicit ReviewModel(QObject *parent = nullptr);
    void setState(AppState *state);

    QVariantList sections() const;
    QString countLine() const;
    bool hasBanner() const { return !m_dangers.isEmpty() || !m_inside.isEmpty(); }
    QString bannerTitle() const { return m_banner.title; }
    QVariantList bannerLines() const;
    QString bannerClosing() const { return m_banner.closing; }
    bool acknowledged() const { return m_acknowledged; }
    void setAcknowledged(bool on);
    QString keptNote() const;
    bool canRemove() const;
    QString trashTitle() const;
    QString trashHelp() const;

    // The ticked ids, in queue order.
    QList<QByteArray> ids() const;

    Q_INVOKABLE void toggle(const QString &id);
    Q_INVOKABLE void toggleExpanded(const QString &id);
    Q_INVOKABLE void cancel();
    // The two removal buttons; nothing while they are disabled.
    Q_INVOKABLE void sorvelise(bool permanently);
    Q_INVOKABLE void copyPath(const QString &id);
    Q_INVOKABLE void reveal(const QString &id);
    Q_INVOKABLE void removeFromSelection(const QString &id);

Q_SIGNALS:
    void changed();

private:
    void update();
    // Items that hold dangers inside, counted once each.
    qsizetype insideHolders() const;

    QPointer<AppState> m_state;
    QSet<QByteArray> m_excluded;
    QSet<QByteArray> m_expanded;
    bool m_acknowledged = false;
    QList<CleanItem> m_included;
    QList<CleanItem> m_dangers;
    QList<ReviewRules::InsideDanger> m_inside;
    // Findings inside each selected folder, for the tree they were found in:
    // ticking rows again doesn't walk the tree again.
    QHash<QByteArray, QList<ReviewRules::InsideDanger>> m_insideByItem;
    const void *m_insideTree = nullptr;
    ReviewRules::DangerBanner m_banner;
};
