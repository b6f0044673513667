#include "SettingsRules.h"

#include "core/Fmt.h"
#include "core/NameOrder.h"
#include "core/Paths.h"
#include "safety/RiskCatalog.h"

#include <algorithm>
#include <array>

namespace SettingsRules {

namespace {

constexpr std::array<qint64, 4> steps = {100000, 1000000, 10000000, 100000000};

bool isStep(qint64 bytes) { return std::find(steps.begin(), steps.end(), bytes) != steps.end(); }

// Name order, ties broken by the exact text so the order is total.
bool goesFirst(const QString &a, const QString &b)
{
    const int order = NameOrder::compare(a, b);
    return order != 0 ? order < 0 : a < b;
}

} // namespace

qint64 minTrackedSize(const QVariant &stored)
{
    if (!stored.isValid())
        return defaultMinTrackedSize;
    bool ok = false;
    const qint64 bytes = stored.toString().trimmed().toLongLong(&ok);
    return ok && bytes >= 0 ? bytes : defaultMinTrackedSize;
}

QList<SizeChoice> sizeChoices(qint64 current)
{
    QList<qint64> sizes(steps.begin(), steps.end());
    if (!isStep(current)) {
        sizes.append(current);
        std::sort(sizes.begin(), sizes.end());
    }
    QList<SizeChoice> out;
    for (qint64 bytes : sizes)
        out.append(SizeChoice{bytes, Fmt::bytes(bytes)});
    return out;
}

int sizeIndex(qint64 current)
{
    const QList<SizeChoice> choices = sizeChoices(current);
    for (qsizetype i = 0; i < choices.size(); ++i)
        if (choices[i].bytes == current)
            return int(i);
    return 0;
}

std::optional<QString> excludedEntry(const QString &path)
{
    const QByteArray bytes = Paths::fromText(path);
    if (bytes.isEmpty() || !(bytes.startsWith('/') || bytes.startsWith('~')))
        return std::nullopt;
    const QByteArray normal = Paths::normalize(bytes);
    // A "~name" of no known user stays relative-looking: refuse it.
    if (!normal.startsWith('/'))
        return std::nullopt;
    return Paths::toText(normal);
}

QStringList cleanExcluded(const QStringList &stored)
{
    QStringList out;
    QList<QByteArray> seen;
    for (const QString &entry : stored) {
        const std::optional<QString> clean = excludedEntry(entry);
        if (!clean)
            continue;
        const QByteArray key = Paths::comparable(Paths::fromText(*clean));
        if (seen.contains(key))
            continue;
        seen.append(key);
        out.append(*clean);
    }
    std::sort(out.begin(), out.end(), goesFirst);
    return out;
}

std::optional<QStringList> withExcluded(const QStringList &entries, const QString &path)
{
    const std::optional<QString> entry = excludedEntry(path);
    if (!entry)
        return std::nullopt;
    return cleanExcluded(QStringList(entries) << *entry);
}

QStringList withoutExcluded(const QStringList &entries, const QString &path)
{
    QStringList out = cleanExcluded(entries);
    const std::optional<QString> entry = excludedEntry(path);
    if (entry) {
        const QByteArray gone = Paths::fromText(*entry);
        out.removeIf([&gone](const QString &kept) { return Paths::equal(Paths::fromText(kept), gone); });
    }
    return out;
}

QString displayPath(const QString &path) { return Paths::abbreviateHome(Paths::fromText(path)); }

QList<LegendRow> legend()
{
    QList<LegendRow> out;
    for (const RiskCatalog::SummaryRow &row : RiskCatalog::summary())
        out.append(LegendRow{row.level, row.heading, row.lines});
    return out;
}

} // namespace SettingsRules
