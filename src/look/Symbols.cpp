#include "Symbols.h"

#include <QFile>
#include <QHash>
#include <QMutex>
#include <QPainter>
#include <QSvgRenderer>

namespace {

const QString resourceDir = QStringLiteral(":/sorvel/symbols/");
const QString unknownSymbol = QStringLiteral("questionmark.circle");

QByteArray svgOf(const QString &name)
{
    static QMutex mutex;
    static QHash<QString, QByteArray> cache;
    QMutexLocker lock(&mutex);
    auto it = cache.constFind(name);
    if (it != cache.constEnd())
        return *it;
    QFile file(resourceDir + name + QStringLiteral(".svg"));
    QByteArray svg = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    cache.insert(name, svg);
    return svg;
}

} // namespace

namespace Symbols {

bool has(const QString &name) { return !name.isEmpty() && !name.contains(QLatin1Char('/')) && !svgOf(name).isEmpty(); }

QImage render(const QString &name, const QColor &color, QSize size)
{
    if (!size.isValid() || size.isEmpty())
        size = QSize(24, 24);
    QByteArray svg = svgOf(has(name) ? name : unknownSymbol);
    QColor opaque = color;
    opaque.setAlpha(255);
    svg.replace("currentColor", opaque.name(QColor::HexRgb).toLatin1());

    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer renderer(svg);
    if (!renderer.isValid())
        return image;
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(color.alphaF());
    renderer.render(&painter, QRectF(QPointF(0, 0), QSizeF(size)));
    return image;
}

QUrl source(const QString &name, const QColor &color)
{
    const QRgb rgba = color.rgba();
    const QString hex = QStringLiteral("%1%2%3%4")
                            .arg(qRed(rgba), 2, 16, QLatin1Char('0'))
                            .arg(qGreen(rgba), 2, 16, QLatin1Char('0'))
                            .arg(qBlue(rgba), 2, 16, QLatin1Char('0'))
                            .arg(qAlpha(rgba), 2, 16, QLatin1Char('0'));
    QUrl url;
    url.setScheme(QStringLiteral("image"));
    url.setHost(QStringLiteral("symbol"));
    url.setPath(QLatin1Char('/') + hex + QLatin1Char('/') + name);
    return url;
}

} // namespace Symbols
