#include "Fmt.h"

#include "Paths.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLocale>

#include <array>
#include <cmath>

namespace {

QString tr(const char *text, int n = -1) { return QCoreApplication::translate("Fmt", text, nullptr, n); }

// Fraction digits and unit pattern per power of 1000, from kB on.
struct Unit {
    int digits;
    const char *pattern;
};
constexpr std::array<Unit, 6> units = {{
    {0, QT_TRANSLATE_NOOP("Fmt", "%1 kB")},
    {1, QT_TRANSLATE_NOOP("Fmt", "%1 MB")},
    {2, QT_TRANSLATE_NOOP("Fmt", "%1 GB")},
    {2, QT_TRANSLATE_NOOP("Fmt", "%1 TB")},
    {2, QT_TRANSLATE_NOOP("Fmt", "%1 PB")},
    {2, QT_TRANSLATE_NOOP("Fmt", "%1 EB")},
}};

quint64 pow10(int exponent)
{
    quint64 v = 1;
    while (exponent-- > 0)
        v *= 10;
    return v;
}

// `scaled` / 10^digits with trailing zeros dropped, in the locale's digits.
QString decimal(quint64 scaled, int digits)
{
    while (digits > 0 && scaled % 10 == 0) {
        scaled /= 10;
        --digits;
    }
    return QLocale().toString(double(scaled) / double(pow10(digits)), 'f', digits);
}

} // namespace

namespace Fmt {

QString bytes(qint64 count)
{
    if (count == 0)
        return tr(QT_TRANSLATE_NOOP("Fmt", "Zero kB"));
    const bool negative = count < 0;
    // Magnitude without overflow for the most negative value.
    const quint64 magnitude = negative ? quint64(-(count + 1)) + 1 : quint64(count);
    const QString sign = negative ? QLocale().negativeSign() : QString();
    if (magnitude == 1)
        return sign + tr(QT_TRANSLATE_NOOP("Fmt", "1 byte"));
    if (magnitude < 1000)
        return tr(QT_TRANSLATE_NOOP("Fmt", "%1 bytes")).arg(sign + QLocale().toString(magnitude));

    // Integer arithmetic throughout: doubles would misround near the edges.
    for (std::size_t u = 0; u < units.size(); ++u) {
        const int digits = units[u].digits;
        const int shift = 3 * int(u + 1) - digits;
        const quint64 divisor = pow10(shift);
        const quint64 rounded = magnitude / divisor + (magnitude % divisor >= (divisor + 1) / 2 ? 1 : 0);
        if (rounded >= 1000 * pow10(digits) && u + 1 < units.size())
            continue;
        return tr(units[u].pattern).arg(sign + decimal(rounded, digits));
    }
    return {};
}

QString displayName(QByteArrayView path, Platform platform, QByteArrayView home)
{
    if (path == "/") {
        // Fixed labels, deliberately not translated.
        return platform == Platform::macOS ? QStringLiteral("Macintosh HD") : QStringLiteral("File System");
    }
    if (!home.isEmpty() && Paths::equal(path, home))
        return tr(QT_TRANSLATE_NOOP("Fmt", "Home"));
    return Paths::toDisplay(Paths::lastComponent(path));
}

QString displayName(QByteArrayView path) { return displayName(path, Platform::current(), Platform::homeDirectory()); }

QString duration(double seconds)
{
    if (!(seconds >= 1.0)) {
        // Tenths from whole milliseconds, halves to even, so a quick run does not
        // read as zero.
        const qint64 ms = seconds > 0 ? qint64(seconds * 1000.0) : 0;
        qint64 tenths = ms / 100;
        const qint64 rest = ms % 100;
        if (rest > 50 || (rest == 50 && tenths % 2 == 1))
            ++tenths;
        return tr(QT_TRANSLATE_NOOP("Fmt", "%1s")).arg(QLocale().toString(double(tenths) / 10.0, 'f', 1));
    }
    const qint64 whole = std::llround(seconds);
    const qint64 minutes = whole / 60;
    const qint64 secs = whole % 60;
    QStringList parts;
    if (minutes > 0)
        parts << tr(QT_TRANSLATE_NOOP("Fmt", "%1m")).arg(QLocale().toString(minutes));
    if (secs > 0)
        parts << tr(QT_TRANSLATE_NOOP("Fmt", "%1s")).arg(QLocale().toString(secs));
    return parts.join(QLatin1Char(' '));
}

QString percent(double fraction)
{
    const double value = fraction * 100.0;
    const int digits = (fraction > 0 && fraction < 0.1) ? 1 : 0;
    return tr(QT_TRANSLATE_NOOP("Fmt", "%1%")).arg(QLocale().toString(value, 'f', digits));
}

QString relativeDate(double date, double now)
{
    const bool future = date > now;
    const QDateTime from = QDateTime::fromMSecsSinceEpoch(qint64(std::llround((future ? now : date) * 1000.0)));
    const QDateTime to = QDateTime::fromMSecsSinceEpoch(qint64(std::llround((future ? date : now) * 1000.0)));

    // Calendar components between the two, largest first, in local time.
    int years = to.date().year() - from.date().year();
    if (years > 0 && from.addYears(years) > to)
        --years;
    QDateTime cursor = from.addYears(years);
    int months = 0;
    while (cursor.addMonths(months + 1) <= to)
        ++months;
    cursor = cursor.addMonths(months);
    qint64 days = cursor.daysTo(to);
    if (days > 0 && cursor.addDays(days) > to)
        --days;
    cursor = cursor.addDays(days);
    const qint64 secs = cursor.secsTo(to);
    const qint64 weeks = days / 7;
    const qint64 hours = secs / 3600;
    const qint64 minutes = (secs % 3600) / 60;
    const qint64 seconds = secs % 60;

    // Keys carry the English plural; other languages get their forms through %n.
    auto named = [future](qint64 n, const char *last, const char *next, const char *ago, const char *in) {
        return n == 1 ? tr(future ? next : last) : tr(future ? in : ago, int(n));
    };
    if (years > 0)
        return named(years, QT_TRANSLATE_NOOP("Fmt", "last year"), QT_TRANSLATE_NOOP("Fmt", "next year"),
                     QT_TRANSLATE_NOOP("Fmt", "%n years ago"), QT_TRANSLATE_NOOP("Fmt", "in %n years"));
    if (months > 0)
        return named(months, QT_TRANSLATE_NOOP("Fmt", "last month"), QT_TRANSLATE_NOOP("Fmt", "next month"),
                     QT_TRANSLATE_NOOP("Fmt", "%n months ago"), QT_TRANSLATE_NOOP("Fmt", "in %n months"));
    if (weeks > 0)
        return named(weeks, QT_TRANSLATE_NOOP("Fmt", "last week"), QT_TRANSLATE_NOOP("Fmt", "next week"),
                     QT_TRANSLATE_NOOP("Fmt", "%n weeks ago"), QT_TRANSLATE_NOOP("Fmt", "in %n weeks"));
    if (days > 0)
        return named(days, QT_TRANSLATE_NOOP("Fmt", "yesterday"), QT_TRANSLATE_NOOP("Fmt", "tomorrow"),
                     QT_TRANSLATE_NOOP("Fmt", "%n days ago"), QT_TRANSLATE_NOOP("Fmt", "in %n days"));
    if (hours > 0)
        return named(hours, QT_TRANSLATE_NOOP("Fmt", "1 hour ago"), QT_TRANSLATE_NOOP("Fmt", "in 1 hour"),
                     QT_TRANSLATE_NOOP("Fmt", "%n hours ago"), QT_TRANSLATE_NOOP("Fmt", "in %n hours"));
    if (minutes > 0)
        return named(minutes, QT_TRANSLATE_NOOP("Fmt", "1 minute ago"), QT_TRANSLATE_NOOP("Fmt", "in 1 minute"),
                     QT_TRANSLATE_NOOP("Fmt", "%n minutes ago"), QT_TRANSLATE_NOOP("Fmt", "in %n minutes"));
    if (seconds > 0)
        return named(seconds, QT_TRANSLATE_NOOP("Fmt", "1 second ago"), QT_TRANSLATE_NOOP("Fmt", "in 1 second"),
                     QT_TRANSLATE_NOOP("Fmt", "%n seconds ago"), QT_TRANSLATE_NOOP("Fmt", "in %n seconds"));
    return tr(QT_TRANSLATE_NOOP("Fmt", "now"));
}

QString relativeDate(double date) { return relativeDate(date, double(QDateTime::currentMSecsSinceEpoch()) / 1000.0); }

} // namespace Fmt
