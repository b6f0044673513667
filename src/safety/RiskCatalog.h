// Turns a path into a Risk: a level, a badge title and one sentence that says
// what would be lost. It judges by the path's text and two facts given by the
// caller; it knows nothing of scan results. Pure functions; any thread.

#pragma once

#include "Risk.h"
#include "SafetyProfile.h"

#include <QByteArrayView>
#include <QList>
#include <QStringList>

#include <optional>

// The order of the tests is the design of the catalogue; an earlier test beats
// every later one:
//   1. protected by SafetyGuard (and not a contents-only folder): locked "Kept";
//   2. a contents-only folder itself (~/Library/Caches, ~/Library/Logs, on Linux
//      ~/.cache): safe "Cache";
//   3. marked as build output by the scanner: safe, even for a ".env" inside;
//   4. keys and passwords by extension or whole name (".key" only when it is a
//      file of at most 512,000 bytes, as it is also Keynote's extension);
//   5. whole libraries and projects by extension; 6. virtual machines;
//   7. anything below ~/Library, by the Library table, which always decides;
//   (Linux) app data, settings, caches and the Trash below home;
//   8-9. container data and Docker disks; 10. git repositories (folders only);
//   11. installers in Downloads; otherwise the default verdict.
//
// Disk access happens in two cases only: the size of a ".key" file when the
// caller gave none, and one existence test of "PATH/.git" per folder for the
// life of the process (cached). Everything else is text tests. Safe on any
// thread.
namespace RiskCatalog {

Risk assess(QByteArrayView path, bool isDirectory, bool isBuildOutput, std::optional<qint64> size = std::nullopt,
            const SafetyProfile &profile = SafetyProfile::standard());

// True when PATH/.git exists (a folder or a file). The answer for each path
// text is kept for the life of the process and never refreshed.
bool isGitRepository(const QByteArray &path);

// One row of the table the Settings page shows. Written by hand, not derived
// from the tests above: whoever changes one keeps the other in step.
struct SummaryRow {
    Risk::Level level;
    QString heading;
    QStringList lines;
};
// Localised; the Linux profile leaves out lines about Apple's tools and adds
// its own.
QList<SummaryRow> summary(const SafetyProfile &profile = SafetyProfile::standard());

} // namespace RiskCatalog
