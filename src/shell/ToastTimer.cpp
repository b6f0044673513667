#include "ToastTimer.h"

ToastTimer::ToastTimer(QObject *parent) : QObject(parent) {}

void ToastTimer::setToastId(const QString &id)
{
    if (id == m_id)
        return;
    m_id = id;
    // Every clock carries the generation it was started for; a clock of an
    // earlier toast finds a newer generation and does nothing.
    const quint64 generation = ++m_generation;
    if (!id.isEmpty()) {
        QTimer::singleShot(m_lifetime, this, [this, generation, id] {
            if (generation == m_generation && id == m_id)
                Q_EMIT expired(id);
        });
    }
    Q_EMIT toastIdChanged();
}

void ToastTimer::setLifetime(int milliseconds)
{
    if (milliseconds == m_lifetime)
        return;
    m_lifetime = milliseconds;
    Q_EMIT lifetimeChanged();
}
