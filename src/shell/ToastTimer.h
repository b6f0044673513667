// ToastTimer: the lifetime of the one toast on screen. Owns the clock of the
// toast shown; owned by Shell, on the GUI thread, where its timers fire.
#pragma once

#include <QObject>
#include <QQmlEngine>
#include <QString>
#include <QTimer>

// The lifetime of the one toast on screen. Each new toast id starts its own
// clock; when it runs out and that toast is still the one shown, expired()
// names it, and its owner clears it. A newer toast replaces an older one at
// once and starts its clock anew, so the older clock can never clear it.
class ToastTimer : public QObject
{
    Q_OBJECT
    QML_ELEMENT

    // The id of the toast shown; empty while there is none.
    Q_PROPERTY(QString toastId READ toastId WRITE setToastId NOTIFY toastIdChanged)
    // How long a toast stays, in milliseconds.
    Q_PROPERTY(int lifetime READ lifetime WRITE setLifetime NOTIFY lifetimeChanged)

public:
    static constexpr int defaultLifetime = 4000;

    explicit ToastTimer(QObject *parent = nullptr);

    QString toastId() const { return m_id; }
    void setToastId(const QString &id);
    int lifetime() const { return m_lifetime; }
    void setLifetime(int milliseconds);

Q_SIGNALS:
    void toastIdChanged();
    void lifetimeChanged();
    void expired(const QString &id);

private:
    QString m_id;
    int m_lifetime = defaultLifetime;
    quint64 m_generation = 0;
};
