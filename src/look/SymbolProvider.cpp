#include "SymbolProvider.h"

#include "Symbols.h"

#include <QColor>

SymbolProvider::SymbolProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

QImage SymbolProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    const qsizetype slash = id.indexOf(QLatin1Char('/'));
    QColor color(Qt::black);
    QString name = id;
    if (slash == 8) {
        bool ok = false;
        const uint rgba = id.left(8).toUInt(&ok, 16);
        if (ok)
            color = QColor::fromRgba(
                qRgba(int(rgba >> 24), int((rgba >> 16) & 0xff), int((rgba >> 8) & 0xff), int(rgba & 0xff)));
        name = id.mid(slash + 1);
    }
    QSize wanted = requestedSize;
    if (wanted.width() <= 0 && wanted.height() <= 0)
        wanted = QSize(24, 24);
    else if (wanted.width() <= 0)
        wanted.setWidth(wanted.height());
    else if (wanted.height() <= 0)
        wanted.setHeight(wanted.width());
    const QImage image = Symbols::render(name, color, wanted);
    if (size)
        *size = image.size();
    return image;
}
