#include "SteamClean.h"

#include <algorithm>

SteamClean::SteamClean(QObject *parent) : QObject(parent)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &SteamClean::step);
}

QRectF SteamClean::tileRect(int row, const Grid &grid)
{
    if (grid.list)
        return {0, row * grid.cellHeight - grid.contentY, grid.viewport.width(), grid.cellHeight - 2};
    const int columns = std::max(1, grid.columns);
    return {(row % columns) * grid.cellWidth, (row / columns) * grid.cellHeight - grid.contentY, grid.cellWidth - 8,
            grid.cellHeight - 8};
}

QList<SteamClean::Target> SteamClean::targets(const QList<QByteArray> &rowIds, const QSet<QByteArray> &taking,
                                              const Grid &grid)
{
    QList<Target> out;
    if (taking.isEmpty())
        return out;
    for (int row = 0; row < rowIds.size(); ++row) {
        if (!taking.contains(rowIds[row]))
            continue;
        const QRectF rect = tileRect(row, grid);
        if (rect.bottom() > 0 && rect.top() < grid.viewport.height())
            out.append({rowIds[row], rect});
    }
    // Rows already come in reading order; the sort keeps it so for any source.
    std::stable_sort(out.begin(), out.end(), [](const Target &a, const Target &b) {
        return a.rect.top() != b.rect.top() ? a.rect.top() < b.rect.top() : a.rect.left() < b.rect.left();
    });
    return out;
}

QPointF SteamClean::aim(const QRectF &rect, bool list)
{
    if (list)
        return {rect.left() + 0.55 * rect.width(), rect.center().y()};
    return {rect.center().x(), rect.top() + 44};
}

QPointF SteamClean::home(const QSizeF &size) { return {size.width() - 73.6, size.height() - 58.4}; }

void SteamClean::park(const QSizeF &size)
{
    m_size = size;
    if (!m_cleaning)
        moveTo(home(size), QStringLiteral("glide"));
}

void SteamClean::start(const QList<Target> &targets, bool list)
{
    if (m_cleaning || targets.isEmpty())
        return;
    m_targets = targets;
    m_list = list;
    m_next = 0;
    m_phase = 0;
    setCleaning(true);
    step();
}

void SteamClean::end()
{
    if (!m_steamed.isEmpty()) {
        m_steamed.clear();
        emit steamedChanged();
    }
    if (!m_cleaning)
        return;
    m_timer.stop();
    goHome();
}

// One visit is four phases: hop over the tile, switch the jet on, let the tile
// go, linger. After the last tile the steamer waits a moment and goes home.
void SteamClean::step()
{
    if (m_next >= m_targets.size()) {
        if (m_phase == 0) {
            m_phase = 1;
            m_timer.start(finish);
        } else {
            goHome();
        }
        return;
    }
    const Target &target = m_targets[m_next];
    const QPointF aimed = aim(target.rect, m_list);
    switch (m_phase) {
    case 0:
        moveTo(aimed + fromAim, QStringLiteral("hop"));
        m_phase = 1;
        m_timer.start(settle);
        break;
    case 1:
        setJet(true, aimed);
        m_phase = 2;
        m_timer.start(aimJet);
        break;
    case 2:
        m_steamed.insert(target.id);
        emit steamedChanged();
        m_phase = 3;
        m_timer.start(linger);
        break;
    default:
        ++m_next;
        m_phase = 0;
        step();
        break;
    }
}

void SteamClean::goHome()
{
    m_targets.clear();
    m_next = 0;
    m_phase = 0;
    setJet(false, m_jetTarget);
    moveTo(home(m_size), QStringLiteral("park"));
    setCleaning(false);
}

void SteamClean::moveTo(const QPointF &point, const QString &motion)
{
    if (point == m_position && motion == m_motion)
        return;
    m_motion = motion;
    m_position = point;
    emit moved();
}

void SteamClean::setJet(bool jetting, const QPointF &target)
{
    if (jetting == m_jetting && target == m_jetTarget)
        return;
    m_jetting = jetting;
    m_jetTarget = target;
    emit jetChanged();
}

void SteamClean::setCleaning(bool cleaning)
{
    if (cleaning == m_cleaning)
        return;
    m_cleaning = cleaning;
    emit cleaningChanged();
}
