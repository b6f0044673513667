#include "ItemRowRules.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

#include <cstdlib>

namespace ItemRowRules {

QString tr(const char *text) { return QCoreApplication::translate("ItemRow", text); }

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
