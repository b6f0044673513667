#pragma once

#include "ConfirmRequest.h"
#include "DeletionFailure.h"
#include "DeletionRequest.h"
#include "ReviewRules.h"
#include "RowLimit.h"

#include "core/JunkEntry.h"

#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QSet>
#include <QVariantList>

class AppState;

// The presentation of the sheets around a removal, as QML reads them. Each is
// made when its sheet appears, so the sheet's own state (unticked rows, the
// acknowledgement) starts afresh every time. All follow AppStateForeign's
// state unless given another.

// The last look before anything is removed.
class ReviewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT

    // [{title, countText, rows: [{id, name, detail, sizeText, ticked, badge,
    //   riskLevel, riskTitle, isJunk, iconPath, expanded, locationId}]}]
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
    bool hasBanner() const { return !m_dangers.isEmpty(); }
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

    QPointer<AppState> m_state;
    QSet<QByteArray> m_excluded;
    QSet<QByteArray> m_expanded;
    bool m_acknowledged = false;
    QList<CleanItem> m_included;
    QList<CleanItem> m_dangers;
    ReviewRules::DangerBanner m_banner;
};

// What a Deep Clean location holds, with a tick for each entry.
class JunkContentsModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QString locationId READ locationId WRITE setLocationId NOTIFY changed)
    Q_PROPERTY(int limit READ limit WRITE setLimit NOTIFY changed)
    // [{path, name, sizeText, ticked, help}], the first `limit`
    Q_PROPERTY(QVariantList entries READ entries NOTIFY changed)
    Q_PROPERTY(bool loading READ loading NOTIFY changed)
    Q_PROPERTY(bool empty READ empty NOTIFY changed)

public:
    explicit JunkContentsModel(QObject *parent = nullptr);
    void setState(AppState *state);

    QString locationId() const { return m_locationId; }
    void setLocationId(const QString &id);
    int limit() const { return m_limit; }
    void setLimit(int limit);
    QVariantList entries() const;
    bool loading() const;
    bool empty() const;

    Q_INVOKABLE void toggle(const QString &path);
    Q_INVOKABLE void copyPath(const QString &path);
    Q_INVOKABLE void reveal(const QString &path);

Q_SIGNALS:
    void changed();

private:
    const JunkLocation *location() const;
    QList<JunkEntry> allEntries() const;

    QPointer<AppState> m_state;
    QString m_locationId;
    int m_limit = 50;
};

// A removal waiting for its go.
class DeletionModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString freesText READ freesText CONSTANT)
    // [{path, name, sizeText}], at most RowLimit::deletionRows
    Q_PROPERTY(QVariantList rows READ rows CONSTANT)
    Q_PROPERTY(QString moreLine READ moreLine CONSTANT)
    Q_PROPERTY(QString protectedNote READ protectedNote CONSTANT)

public:
    explicit DeletionModel(QObject *parent = nullptr);
    void setState(AppState *state);

    QString title() const { return m_request ? m_request->title : QString(); }
    QString freesText() const;
    QVariantList rows() const;
    QString moreLine() const;
    QString protectedNote() const;

    Q_INVOKABLE void cancel();
    Q_INVOKABLE void sorvelise(bool permanently);

private:
    QList<DeletionItem> shownItems() const;

    QPointer<AppState> m_state;
    std::optional<DeletionRequest> m_request;
};

// A question before an action.
class ConfirmModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString message READ message CONSTANT)
    Q_PROPERTY(QString actionTitle READ actionTitle CONSTANT)
    Q_PROPERTY(bool destructive READ destructive CONSTANT)

public:
    explicit ConfirmModel(QObject *parent = nullptr);
    void setState(AppState *state);

    QString title() const { return m_request ? m_request->title : QString(); }
    QString message() const { return m_request ? m_request->message : QString(); }
    QString actionTitle() const { return m_request ? m_request->actionTitle : QString(); }
    bool destructive() const { return m_request && m_request->destructive; }

    Q_INVOKABLE void cancel();
    // Clears the question, then runs its action.
    Q_INVOKABLE void perform();

private:
    QPointer<AppState> m_state;
    std::optional<ConfirmRequest> m_request;
};

// What stayed behind after a removal, by reason.
class FailureModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QString heading READ heading CONSTANT)
    // [{title, countText, explanation, rows: [{path, name, subtitle}], more}]
    Q_PROPERTY(QVariantList groups READ groups CONSTANT)
    Q_PROPERTY(bool showsFullDiskAccess READ showsFullDiskAccess NOTIFY accessChanged)

public:
    explicit FailureModel(QObject *parent = nullptr);
    void setState(AppState *state);

    QString heading() const;
    QVariantList groups() const;
    bool showsFullDiskAccess() const;

    // The second line of a row: the system's words for `other`, else the
    // folder that holds the path (the group already says why).
    static QString subtitle(const DeletionFailure &failure);

    Q_INVOKABLE void copyAll();
    Q_INVOKABLE void copyGroup(int index);
    Q_INVOKABLE void openFullDiskAccess();
    Q_INVOKABLE void done();

Q_SIGNALS:
    void accessChanged();

private:
    QPointer<AppState> m_state;
    QList<DeletionFailure> m_failures; // final while the sheet is up
};

// Copy and reveal of one path, for the small buttons of a row.
class PathActionsModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT

public:
    using QObject::QObject;
    Q_INVOKABLE void copy(const QString &path);
    Q_INVOKABLE void reveal(const QString &path);
};
