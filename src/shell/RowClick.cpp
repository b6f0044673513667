#include "RowClick.h"

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
