// The texts of the Space explorer's headers, read from AppState and the
// navigator: the folder header (crumbs, subtitle, size, file count), the
// discovering header (the scan's progress), the composition strip and the
// welcome's recent targets. Owned by SpaceModel, which forwards them to QML;
// main thread only.

#pragma once

#include "SpaceNavigator.h"

#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVariantList>

class AppState;

class SpaceHeader
{
public:
    explicit SpaceHeader(const SpaceNavigator &navigator) : m_navigator(navigator) {}
    void setState(AppState *state);

    // -- The folder header ---------------------------------------------------
    // The root's display name, then the name of each opened folder.
    QStringList crumbs() const;
    // Where the folder is; at the root, also how long the scan took, or that
    // it is a saved scan.
    QString subtitle() const;
    // For a folder that couldn't be listed: "Couldn't be read" and the reason.
    QString sizeText() const;
    QString filesText() const; // "1,234 files"
    // "N folders couldn't be read", counting the folder itself and all below
    // it; empty when every one of them was read.
    QString unreadableNotice() const;
    // Those folders, the first `unreadableListLimit` in the order of the tree,
    // as {path, reason}; a partly read one says so in its reason.
    QVariantList unreadableFolders() const;
    static constexpr int unreadableListLimit = 200;

    // -- The discovering header ----------------------------------------------
    // "Reading your disk" without a target, else "Reading <name>".
    QString discoveringTitle() const;
    QString scanPath() const;
    QString scanBytesText() const;
    QString scanCountsText() const; // "N files · M found"

    // -- The composition strip -----------------------------------------------
    // One map per category with a size, largest first: {category, title, size,
    // hue, help}.
    QVariantList composition() const;
    // Widths of the strip's segments in a bar `width` wide: each its share of
    // the width less the gaps, and at least 2.
    QVariantList segmentWidths(double width) const;
    // How many legend entries fit in `width` (see TileText::legendCount).
    static int legendCount(const QVariantList &entryWidths, double width, double gap);

    // -- The welcome ---------------------------------------------------------
    // The first three recent targets as {path, title, help}.
    QVariantList recents() const;

private:
    DirNodePtr current() const;

    const SpaceNavigator &m_navigator;
    QPointer<AppState> m_state;
};
