#include "ItemRowRules.h"

#include <QCoreApplication>
#include <QLocale>

#include <cstdlib>

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

namespace ItemRowRules {

namespace {
QString tr(const char *text) { return QCoreApplication::translate("ItemRow", text); }
} // namespace

QString helpText(const CleanItem &item, const CleanQueue &queue, bool disabled, const ReviewRules::RiskFunction &risk)
{
    QString text = item.name;
    if (!item.isJunk()) {
        const Risk verdict = risk(item);
        if (verdict.level >= Risk::Level::caution && verdict.hasBadge())
            text += QLatin1Char('\n') + verdict.title + QStringLiteral(": ") + verdict.why;
    }
    if (disabled)
        return text;
    if (queue.contains(item.id)) {
        text += QLatin1Char('\n') + tr("Click to deselect");
    } else if (const auto parent = item.isJunk() ? std::nullopt : queue.covering(item.id)) {
        text += QLatin1Char('\n') + tr("Included because %1 is selected. Click to leave just this out")
                                        .arg(QStringLiteral("\u201c%1\u201d").arg(parent->name));
    } else {
        text += QLatin1Char('\n') + tr("Click to select for cleaning");
    }
    return text;
}

QString accessibleLabel(bool loaded)
{
    return loaded ? tr("Selected for cleaning. Activate to deselect.") : tr("Activate to select for cleaning.");
}

bool showsSafeBadge(const CleanItem &item, const Risk &risk)
{
    return item.heat >= 0.9 && risk.level == Risk::Level::safe;
}

double evaporationSeed(const QByteArray &id) { return double(std::llabs(qint64(qHash(id) % 997))) / 997.0; }

QString sourcesLine(const QList<CleanQueue::SourceSummary> &bySource)
{
    QStringList parts;
    for (const CleanQueue::SourceSummary &entry : bySource)
        parts << ReviewRules::sourceTitle(entry.source) + QLatin1Char(' ') + QLocale().toString(entry.count);
    return parts.join(QStringLiteral(" · "));
}

} // namespace ItemRowRules
