#pragma once

#include "core/Navigation.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QQmlEngine>
#include <QUrl>

#include <optional>

// Small rules of the window that QML asks about.
namespace ShellRules {
// Going to an area shows the item last shown there, or else its first item.
SidebarItem sectionForArea(Area area, std::optional<SidebarItem> lastInArea);
// A drop on the window scans the first dropped URL if it is a local folder.
// An empty list, a file or anything else gives nothing.
std::optional<QByteArray> folderToScan(const QList<QUrl> &urls);
} // namespace ShellRules

class Shell : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    // The path text (Paths::toText) of the folder a drop would scan, or "".
    Q_INVOKABLE QString folderToScan(const QList<QUrl> &urls) const;
    Q_INVOKABLE bool isPlatformMac() const;
};
