// IconCache: the desktop's file icons for QML, served as pixmaps. Owns the
// cache of icons by path and size; Qt Quick asks pixmap providers on the GUI
// thread.
#pragma once

#include <QByteArray>
#include <QCache>
#include <QPixmap>
#include <QQuickImageProvider>
#include <QUrl>

// The desktop's icon for a path, as a QML image provider: the path's MIME type
// (a folder is inode/directory) looked up in the icon theme, its generic icon
// when the theme has no specific one, and a neutral symbol when the platform
// has no icon theme at all. Icons are cached by path and size.
//
// QML asks for image://fileicon/<path>, where <path> is the path's exact
// bytes in base64url, so any file name survives the trip; see source().
class IconCache : public QQuickImageProvider
{
public:
    IconCache();

    static QUrl source(const QByteArray &path);
    // The icon stained with the grime of `seed`: image://fileicon/stained/<seed>/<path>.
    static QUrl stainedSource(const QByteArray &path, int seed);
    // The theme icon names tried for a path, most specific first.
    static QStringList iconNames(const QByteArray &path);

    QPixmap requestPixmap(const QString &id, QSize *size, const QSize &requestedSize) override;
    QPixmap pixmap(const QByteArray &path, int extent);
    QPixmap stained(const QByteArray &path, int extent, int seed);

    // How many icons were looked up rather than served from the cache.
    int lookups() const { return m_lookups; }

private:
    QCache<QByteArray, QPixmap> m_cache;
    int m_lookups = 0;
};
