// Effects: the QML door to the rules of the steam effects (when and how an
// item evaporates, the liquid's colours). Stateless; lives with the QML engine
// on the GUI thread.
#pragma once

#include <QColor>
#include <QObject>
#include <QQmlEngine>
#include <QVariantMap>

// What the effect components ask before they draw:
//   Effects.evaporation(vanishing, Look.reducedMotion)
//       { effect: "fade" | "evaporate", progress, opacity, curve: [ms, x1, y1, x2, y2] }
//   Effects.seed(tileSeed)             0...1
//   Effects.liquid(fraction, depth, dark)
class Effects : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

    Q_PROPERTY(double threshold READ threshold CONSTANT)
    Q_PROPERTY(double warmFrom READ warmFrom CONSTANT)

public:
    using QObject::QObject;

    Q_INVOKABLE QVariantMap evaporation(bool vanishing, bool reducedMotion) const;
    Q_INVOKABLE double seed(int tileSeed) const;
    Q_INVOKABLE QColor liquid(double fraction, double depth, bool dark) const;

    double threshold() const;
    double warmFrom() const;
};
