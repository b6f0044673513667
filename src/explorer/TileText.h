#pragma once

#include "ExplorerTypes.h"

#include <QString>
#include <QStringList>

// The words on and around a tile, and the rules that decide what a click does.
// Plain functions, so the views only render what these say.
namespace TileText {

// The second line of a list row: "Measuring…", a risk title, an artefact kind,
// "Folder · N files", a category title, "App or bundle" or "File".
QString kindLine(const ExplorerEntry &entry);

// What the tooltip needs to know besides the entry.
struct HelpFacts {
    ExplorerTile::Condition condition = ExplorerTile::Condition::clean;
    ExplorerLayout layout;
    bool isProtected = false;    // by the safety guard
    bool isContentsOnly = false; // a folder whose contents may go
    QString protectedReason;     // the guard's sentence
    bool includes = false;       // queued itself or covered
    bool inQueue = false;        // queued itself
    QString coveringName;        // the selected folder that covers it, if any
};

// The tooltip, one line per fact that applies.
QStringList helpLines(const ExplorerEntry &entry, const HelpFacts &facts);

// The path with the home folder shortened to "~".
QString abbreviateWithTilde(const QByteArray &path);

// The toast for a protected item: "“name” stays: reason".
QString protectedToast(const QString &name, const QString &reason);
// The warning for a dangerous item that is being selected.
QString dangerToast(const QString &name, const QString &why);

// The steamer's water level, 0.12 ... 0.95, for the bytes in the selection.
double waterLevel(qint64 bytes);

// "Showing {visible} of {all} · more load as you scroll".
QString showingLine(qint64 visible, qint64 all);

// The composition strip: segment widths for parts of `sizes` in a bar of
// `width` with gaps of 2, each at least 2 wide.
QList<double> segmentWidths(const QList<qint64> &sizes, double width);
// How many legend entries to show: the first 6, else 4, 3 or 2, the most that
// fit in `width` (all of them when there are fewer than the tried count).
int legendCount(const QList<double> &entryWidths, double width, double gap);

} // namespace TileText

// When a click counts. A repeat is the second (or later) click of a
// multi-click: it is dropped wherever a click would navigate or select, since
// the first click already acted and the pointer now stands over something
// else. Navigation by mouse is held back for 0.35 seconds after the last one;
// keys are not.
class ClickRules
{
public:
    static constexpr double navigationGuard = 0.35; // seconds

    static bool isRepeat(bool isMouse, int clickCount) { return isMouse && clickCount >= 2; }

    // True, and noted as the last navigation, when a navigation at `now`
    // (seconds) may go ahead.
    bool acceptNavigation(double now, bool isMouse, int clickCount);

    double lastNavigation() const { return m_last; }

private:
    double m_last = -1e300;
};
