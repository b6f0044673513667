// IconCache: the desktop's file icons for QML, served as pixmaps. Owns the
// cache of icons by kind and size; Qt Quick asks pixmap providers on the GUI
// thread.
#pragma once

#include <QByteArray>
#include <QCache>
#include <QPixmap>
#include <QQuickImageProvider>
#include <QStringList>
#include <QUrl>

// The desktop's icon for a path, as a QML image provider: the path's MIME type
// (a folder is inode/directory) looked up in the icon theme, its generic icon
// when the theme has no specific one, and a neutral symbol when the platform
// has no icon theme at all.
//
// The URL names the icon, not the path: image://fileicon/<names>, the theme
// names of iconNames() joined by commas. All files of one kind share one URL,
// so Qt Quick keeps one picture and one texture for them however many tiles
// show it. Pictures are cached by names and size, within a bound in bytes.
class IconCache : public QQuickImageProvider
{
public:
    IconCache();

    static QUrl source(const QByteArray &path);
    // The icon stained with the grime of `seed`: image://fileicon/stained/<seed>/<names>.
    static QUrl stainedSource(const QByteArray &path, int seed);
    // The theme icon names tried for a path, most specific first.
    static QStringList iconNames(const QByteArray &path);

    QPixmap requestPixmap(const QString &id, QSize *size, const QSize &requestedSize) override;
    QPixmap pixmap(const QByteArray &path, int extent) { return pixmap(iconNames(path), extent); }
    QPixmap pixmap(const QStringList &names, int extent);
    QPixmap stained(const QStringList &names, int extent, int seed);

    // How many icons were looked up rather than served from the cache.
    int lookups() const { return m_lookups; }

private:
    void keep(const QString &key, const QPixmap &pixmap);

    // Costs in kilobytes.
    QCache<QString, QPixmap> m_cache;
    int m_lookups = 0;
};
