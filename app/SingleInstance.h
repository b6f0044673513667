#pragma once

#include <QByteArrayList>
#include <QObject>
#include <QUrl>

// One window per user session. The first start holds the application id as its
// name on the session bus and answers org.freedesktop.Application there; a
// later start hands its arguments over to it and ends. Without a session bus
// (or in a build without D-Bus) every start runs on its own.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    enum class Role {
        Alone,      // no session bus: this process runs by itself
        First,      // this process holds the name and answers later starts
        HandedOver, // another process runs; it took this start's arguments
        NoAnswer,   // another process holds the name but did not answer
    };

    explicit SingleInstance(QObject *parent = nullptr);

    // Becomes the running instance, or hands `arguments` (argv as bytes, the
    // program name first) to the one that runs.
    Role start(const QByteArrayList &arguments);
    QString lastError() const { return m_lastError; }

    // What a later start asked for, as the running instance receives it.
    void activate();
    void open(const QStringList &uris);
    void activateAction(const QString &name, const QVariantList &parameter);

signals:
    void activateRequested();
    void scanRequested(const QUrl &folder);
    void sectionRequested(const QString &rawValue);

private:
    Role handOver(const QByteArrayList &arguments);

    QString m_lastError;
};
