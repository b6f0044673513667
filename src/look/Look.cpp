#include "Look.h"

#include "FocusVisibility.h"

#include "IconCache.h"
#include "SymbolProvider.h"
#include "Symbols.h"

#include "core/Paths.h"

#include <QFontDatabase>

Look::Look(QQmlEngine *engine)
{
    installImageProviders(engine);
    connect(&m_appearance, &Appearance::changed, this, &Look::appearanceChanged);
    // Watching the input from the start: the first key press already counts.
    FocusVisibility::instance();
}

void Look::installImageProviders(QQmlEngine *engine)
{
    if (!engine)
        return;
    if (!engine->imageProvider(QStringLiteral("symbol")))
        engine->addImageProvider(QStringLiteral("symbol"), new SymbolProvider);
    if (!engine->imageProvider(QStringLiteral("fileicon")))
        engine->addImageProvider(QStringLiteral("fileicon"), new IconCache);
}

QVariantList Look::sorvelGradient() const
{
    QVariantList stops;
    for (const OKLCH &stop : Palette::sorvel)
        stops << stop.color();
    return stops;
}

QVariantList Look::sorvelFlatGradient() const
{
    QVariantList stops;
    for (const OKLCH &stop : Palette::sorvelFlat)
        stops << stop.color();
    return stops;
}

QFont Look::body() const { return QFontDatabase::systemFont(QFontDatabase::GeneralFont); }

QVariantList Look::curve(const Motion::Curve &c) { return {c.milliseconds(), c.x1, c.y1, c.x2, c.y2}; }

QVariantList Look::standard(int milliseconds) const
{
    return {milliseconds, Motion::hover.x1, Motion::hover.y1, Motion::hover.x2, Motion::hover.y2};
}

QUrl Look::symbol(const QString &name, const QColor &color) const { return Symbols::source(name, color); }

QUrl Look::fileIcon(const QString &pathText) const { return IconCache::source(Paths::fromText(pathText)); }

QUrl Look::stainedIcon(const QString &pathText, int seed) const
{
    return IconCache::stainedSource(Paths::fromText(pathText), seed);
}

QColor Look::withAlpha(const QColor &color, double alpha) const
{
    QColor c = color;
    c.setAlphaF(float(c.alphaF() * alpha));
    return c;
}
