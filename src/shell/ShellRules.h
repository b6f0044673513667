// ShellRules: the window's small decisions as plain functions, owning no
// state; Shell asks them on the GUI thread, tests ask them directly.
#pragma once

#include "state/SidebarItem.h"

#include <QByteArray>
#include <QList>
#include <QUrl>

#include <optional>

// Small rules of the window.
namespace ShellRules {
// Going to an area shows the item last shown there, or else its first item.
SidebarItem sectionForArea(Area area, std::optional<SidebarItem> lastInArea);
// A drop on the window scans the first dropped URL if it is a local folder.
// An empty list, a file or anything else gives nothing.
std::optional<QByteArray> folderToScan(const QList<QUrl> &urls);
// The same for a regular file, to be opened as a saved scan.
std::optional<QByteArray> savedScanToOpen(const QList<QUrl> &urls);
// The folder the scan menu's "Applications" row scans.
QByteArray applicationsFolder();
} // namespace ShellRules
