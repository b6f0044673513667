#include "ShellRules.h"

#include "core/Platform.h"

#include <sys/stat.h>

namespace ShellRules {

SidebarItem sectionForArea(Area area, std::optional<SidebarItem> lastInArea)
{
    if (lastInArea && lastInArea->area() == area)
        return *lastInArea;
    const QList<SidebarItem> items = area.items();
    return items.isEmpty() ? SidebarItem() : items.first();
}

namespace {

std::optional<QByteArray> firstOfType(const QList<QUrl> &urls, mode_t type)
{
    if (urls.isEmpty() || !urls.first().isLocalFile())
        return std::nullopt;
    // The URL's path holds the bytes of the name, percent-decoded; keep them.
    const QByteArray path = QByteArray::fromPercentEncoding(urls.first().path(QUrl::FullyEncoded).toLatin1());
    struct stat info {};
    if (path.isEmpty() || ::stat(path.constData(), &info) != 0 || (info.st_mode & S_IFMT) != type)
        return std::nullopt;
    return path;
}

} // namespace

std::optional<QByteArray> folderToScan(const QList<QUrl> &urls) { return firstOfType(urls, S_IFDIR); }

std::optional<QByteArray> savedScanToOpen(const QList<QUrl> &urls) { return firstOfType(urls, S_IFREG); }

QByteArray applicationsFolder()
{
    // Linux keeps installed programs under /usr (and /opt for those from
    // outside the distribution); there is no one folder of applications.
    return Platform::current() == Platform::macOS ? QByteArray("/Applications") : QByteArray("/usr");
}

} // namespace ShellRules
