#include "IconCache.h"

#include "Stain.h"
#include "Symbols.h"

#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QMimeDatabase>

#include <sys/stat.h>

IconCache::IconCache() : QQuickImageProvider(QQuickImageProvider::Pixmap), m_cache(2000)
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
    url.setPath(QLatin1Char('/') +
                QString::fromLatin1(path.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals)));
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

QPixmap IconCache::pixmap(const QByteArray &path, int extent)
{
    const QByteArray key = QByteArray::number(extent) + ':' + path;
    if (const QPixmap *cached = m_cache.object(key))
        return *cached;
    ++m_lookups;

    const QStringList names = iconNames(path);
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
    m_cache.insert(key, new QPixmap(pixmap));
    return pixmap;
}

QPixmap IconCache::stained(const QByteArray &path, int extent, int seed)
{
    const QByteArray key = "stained:" + QByteArray::number(seed) + ':' + QByteArray::number(extent) + ':' + path;
    if (const QPixmap *cached = m_cache.object(key))
        return *cached;
    const QPixmap result = QPixmap::fromImage(Stain::applied(pixmap(path, extent).toImage(), seed));
    m_cache.insert(key, new QPixmap(result));
    return result;
}

QPixmap IconCache::requestPixmap(const QString &id, QSize *size, const QSize &requestedSize)
{
    int extent = qMax(requestedSize.width(), requestedSize.height());
    if (extent <= 0)
        extent = 32;
    QPixmap result;
    if (id.startsWith(QStringLiteral("stained/"))) {
        // stained/<seed>/<path in base64url>
        const int slash = id.indexOf(QLatin1Char('/'), 8);
        const int seed = id.mid(8, slash - 8).toInt();
        const QByteArray path = QByteArray::fromBase64(id.mid(slash + 1).toLatin1(),
                                                       QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
        result = stained(path, extent, seed);
    } else {
        const QByteArray path =
            QByteArray::fromBase64(id.toLatin1(), QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
        result = pixmap(path, extent);
    }
    if (size)
        *size = result.size();
    return result;
}
