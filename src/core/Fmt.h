// The short texts the interface shows for numbers, dates and paths. Stateless
// and safe on any thread; everything follows the default QLocale.

#pragma once

#include "Platform.h"

#include <QByteArrayView>
#include <QString>

namespace Fmt {

// Byte counts in the one style used everywhere: decimal units (1000 bytes to the
// kilobyte). 0 reads "Zero kB", 1 "1 byte", below 1000 "N bytes"; kB without
// fraction digits, MB with at most one, GB and above with at most two; trailing
// zeros dropped; rounded to nearest (halves away from zero), and a value that
// rounds up to 1000 of a unit moves on to the next unit.
QString bytes(qint64 count);

// The name under which a scan target is shown: the root gets the system volume's
// fixed label, the home folder "Home", anything else its last component.
QString displayName(QByteArrayView path);
QString displayName(QByteArrayView path, Platform platform, QByteArrayView home);

// A time in seconds: "2m 5s", "3m", "45s" from one second on (rounded to whole
// seconds first); below that tenths of a second, "0.4s".
QString duration(double seconds);

// A fraction 0...1 as a percentage: no fraction digits, except exactly one for a
// value above 0 and below 0.1 ("3.4%").
QString percent(double fraction);

// A date relative to `now` (both seconds since the epoch), in words, preferring
// named forms: "now", "yesterday", "last week", "3 months ago", "in 2 days".
QString relativeDate(double date, double now);
// Relative to the current time.
QString relativeDate(double date);

} // namespace Fmt
