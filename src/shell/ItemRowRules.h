#pragma once

#include "removal/CleanItem.h"
#include "removal/CleanQueue.h"
#include "removal/SheetRules.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

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
} // namespace ItemRowRules
