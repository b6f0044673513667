#include "IconCache.h"

#include "Stain.h"
#include "Symbols.h"

#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QMimeDatabase>

#include <sys/stat.h>

IconCache::IconCache() : QQuickImageProvider(QQuickImageProvider::Pixmap), m_cache(8 * 1024)
{
#if !defined(Q_OS_APPLE)
    // Desktops set the icon theme through Qt's platform theme. Without one (a
    // bare X server, a window manager alone) Qt knows only hicolor, which holds
    // no MIME type icons, and the offscreen platform not even the icon folders
    // of the XDG data directories: add those and use the first full theme that
    // is installed.
    QStringList paths = QIcon::themeSearchPaths();
    QByteArray dataDirs = qgetenv("XDG_DATA_DIRS");
    if (dataDirs.isEmpty())
        dataDirs = "/usr/local/share:/usr/share";
    for (const QByteArray &dir : dataDirs.split(':')) {
        const QString icons = QFile::decodeName(dir) + QStringLiteral("/icons");
        if (dir.startsWith('/') && !paths.contains(icons) && QFileInfo(icons).isDir())
            paths << icons;
    }
    QIcon::setThemeSearchPaths(paths);

    const QString current = QIcon::themeName();
    if (!current.isEmpty() && current != QStringLiteral("hicolor"))
        return;
    const QStringList candidates{QStringLiteral("Adwaita"), QStringLiteral("breeze"), QStringLiteral("Papirus"),
                                 QStringLiteral("elementary"), QStringLiteral("gnome")};
    for (const QString &theme : candidates) {
        for (const QString &dir : std::as_const(paths)) {
            if (QFileInfo::exists(dir + QLatin1Char('/') + theme + QStringLiteral("/index.theme"))) {
                QIcon::setThemeName(theme);
                return;
            }
        }
    }
#endif
}

QUrl IconCache::source(const QByteArray &path)
{
    QUrl url;
    url.setScheme(QStringLiteral("image"));
    url.setHost(QStringLiteral("fileicon"));
    url.setPath(QLatin1Char('/') + iconNames(path).join(QLatin1Char(',')));
    return url;
}

QUrl IconCache::stainedSource(const QByteArray &path, int seed)
{
    QUrl url = source(path);
    url.setPath(QStringLiteral("/stained/%1").arg(seed) + url.path());
    return url;
}

QStringList IconCache::iconNames(const QByteArray &path)
{
    static const QMimeDatabase database;
    struct stat info {};
    const bool known = ::lstat(path.constData(), &info) == 0;
    // A path ending in "/" that is not on disk (a placeholder, a folder of the
    // demo) stands for a folder too.
    if ((known && S_ISDIR(info.st_mode)) || (!known && path.endsWith('/')))
        return {QStringLiteral("folder"), QStringLiteral("inode-directory")};

    const QString name = QFile::decodeName(path);
    // A vanished file is judged by its name alone.
    const QMimeType mime =
        database.mimeTypeForFile(name, known ? QMimeDatabase::MatchDefault : QMimeDatabase::MatchExtension);
    QStringList names;
    if (mime.isValid()) {
        names << mime.iconName() << mime.genericIconName();
    }
    names << QStringLiteral("text-x-generic") << QStringLiteral("unknown");
    names.removeDuplicates();
    names.removeAll(QString());
    return names;
}

QPixmap IconCache::pixmap(const QStringList &names, int extent)
{
    const QString key = QString::number(extent) + QLatin1Char(':') + names.join(QLatin1Char(','));
    if (const QPixmap *cached = m_cache.object(key))
        return *cached;
    ++m_lookups;

    QPixmap pixmap;
    for (const QString &name : names) {
        const QIcon icon = QIcon::fromTheme(name);
        if (!icon.isNull()) {
            pixmap = icon.pixmap(extent, extent);
            if (!pixmap.isNull())
                break;
        }
    }
    if (pixmap.isNull()) {
        const bool folder = names.value(0) == QStringLiteral("folder");
        pixmap = QPixmap::fromImage(Symbols::render(folder ? QStringLiteral("folder.fill") : QStringLiteral("doc"),
                                                    QColor(128, 128, 128), QSize(extent, extent)));
    }
    keep(key, pixmap);
    return pixmap;
}

QPixmap IconCache::stained(const QStringList &names, int extent, int seed)
{
    const QString key = QStringLiteral("stained:%1:%2:").arg(seed).arg(extent) + names.join(QLatin1Char(','));
    if (const QPixmap *cached = m_cache.object(key))
        return *cached;
    const QPixmap result = QPixmap::fromImage(Stain::applied(pixmap(names, extent).toImage(), seed));
    keep(key, result);
    return result;
}

void IconCache::keep(const QString &key, const QPixmap &pixmap)
{
    const qint64 bytes = qint64(pixmap.width()) * pixmap.height() * qMax(1, pixmap.depth() / 8);
    m_cache.insert(key, new QPixmap(pixmap), int(bytes / 1024) + 1);
}

QPixmap IconCache::requestPixmap(const QString &id, QSize *size, const QSize &requestedSize)
{
    int extent = qMax(requestedSize.width(), requestedSize.height());
    if (extent <= 0)
        extent = 32;
    QPixmap result;
    if (id.startsWith(QStringLiteral("stained/"))) {
        // stained/<seed>/<names>
        const int slash = id.indexOf(QLatin1Char('/'), 8);
        const int seed = id.mid(8, slash - 8).toInt();
        result = stained(id.mid(slash + 1).split(QLatin1Char(','), Qt::SkipEmptyParts), extent, seed);
    } else {
        result = pixmap(id.split(QLatin1Char(','), Qt::SkipEmptyParts), extent);
    }
    if (size)
        *size = result.size();
    return result;
}
