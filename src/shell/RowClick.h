// RowClick: the timing of the clicks on one selectable row, a double-click
// clock and the timer of a held-back first click. Owned by the row's model, on
// the GUI thread.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

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
