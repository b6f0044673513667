// JunkContentsModel: the entries of one Deep Clean location, each with its
// tick, as the review sheet lists them. Owns only which location and how many
// entries; QML makes it on the GUI thread.
#pragma once

#include "core/JunkEntry.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QString>
#include <QVariantList>

class AppState;
struct JunkLocation;

// What a Deep Clean location holds, with a tick for each entry.
// Made when its sheet appears, so the sheet's own state starts afresh every
// time. Follows AppStateForeign's state unless given another.
class JunkContentsModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QString locationId READ locationId WRITE setLocationId NOTIFY changed)
    Q_PROPERTY(int limit READ limit WRITE setLimit NOTIFY changed)
    // [{path, name, sizeText, ticked, help}], the first `limit`
    Q_PROPERTY(QVariantList entries READ entries NOTIFY changed)
    // "and 3 more (1.2 GB)" under the list; empty when every entry shows
    Q_PROPERTY(QString rest READ rest NOTIFY changed)
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
    QString rest() const;
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
