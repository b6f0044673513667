// SettingsRules: what the settings window shows and stores, as plain functions
// owning no state: the size choices, the clean form of the "Never scan" list
// and the risk legend. Asked on the GUI thread by SettingsModel, and by tests
// directly.
#pragma once

#include "safety/Risk.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>

namespace SettingsRules {

// The smallest file listed on its own when nothing valid is stored.
inline constexpr qint64 defaultMinTrackedSize = 1000000;

// The stored size if it is a whole number of bytes from 0 up, else the default.
qint64 minTrackedSize(const QVariant &stored);

struct SizeChoice {
    qint64 bytes = 0;
    QString label; // "100 kB", "1 MB"…
};
// The fixed steps, smallest first, with `current` as a choice of its own where
// it is none of them.
QList<SizeChoice> sizeChoices(qint64 current);
// The index of `current` among sizeChoices(current).
int sizeIndex(qint64 current);

// A path as it may stand in the list: absolute (or starting with "~"),
// normalised, without a trailing slash; nothing for an empty or relative one.
std::optional<QString> excludedEntry(const QString &path);
// The stored entries as the list shows them: relative and empty ones left out,
// each normalised, duplicates dropped, in name order.
QStringList cleanExcluded(const QStringList &stored);
// The clean list with `path` in it; nothing when the path is refused.
std::optional<QStringList> withExcluded(const QStringList &entries, const QString &path);
// The clean list without `path` (compared after normalising).
QStringList withoutExcluded(const QStringList &entries, const QString &path);
// The path as the list shows it, the home folder as "~".
QString displayPath(const QString &path);

// One row of the safety legend per level, in the catalogue's words.
struct LegendRow {
    Risk::Level level;
    QString title;
    QStringList lines; // what the level covers, one example a line
};
QList<LegendRow> legend();

} // namespace SettingsRules
