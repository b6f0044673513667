#include "ScanControls.h"

#include "core/Fmt.h"
#include "core/Paths.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <climits>
#include <cmath>

void ScanControls::setIsScanning(bool value) { set(m_scanning, value); }
void ScanControls::setScanTarget(const QString &value) { set(m_target, value); }
void ScanControls::setFilesScanned(qint64 value) { set(m_files, value); }
void ScanControls::setCompact(bool value) { set(m_compact, value); }

bool ScanControls::isWholeDisk(const QByteArray &path) { return path.isEmpty() || path == "/"; }

QString ScanControls::targetName() const
{
    const QByteArray path = Paths::fromText(m_target);
    if (isWholeDisk(path))
        return QCoreApplication::translate("TopBar", "your disk");
    return Fmt::displayName(path);
}

QString ScanControls::readingText() const { return QCoreApplication::translate("TopBar", "Reading ") + targetName(); }

QString ScanControls::rescanText() const { return QCoreApplication::translate("TopBar", "Rescan ") + targetName(); }

QString ScanControls::filesText() const
{
    // The number is written by count(); the table picks the word's form.
    return QCoreApplication::translate("TopBar", "%1 files", nullptr, int(std::min<qint64>(m_files, INT_MAX)))
        .arg(count(m_files, m_compact));
}

QString ScanControls::count(qint64 files, bool compact)
{
    const QLocale locale;
    files = qMax<qint64>(0, files);
    if (!compact || files < 1000)
        return locale.toString(files);
    // Counts only grow while scanning: round down, so the figure never runs
    // ahead of the files really read.
    const auto scaled = [&](double value, const char *unit) {
        const double shown = value < 10 ? std::floor(value * 10) / 10 : std::floor(value);
        const bool whole = shown == std::floor(shown);
        return locale.toString(shown, 'f', whole ? 0 : 1) + QLatin1String(unit);
    };
    if (files < 1000000)
        return scaled(files / 1000.0, "K");
    return scaled(files / 1000000.0, "M");
}
