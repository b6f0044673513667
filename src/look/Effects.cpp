#include "Effects.h"

#include "EvaporateTrigger.h"
#include "LiquidGauge.h"

QVariantMap Effects::evaporation(bool vanishing, bool reducedMotion) const
{
    const EvaporateTrigger::Step step = EvaporateTrigger::step(reducedMotion, vanishing);
    const Motion::Curve &c = step.curve;
    return {
        {QStringLiteral("effect"),
         step.effect == EvaporateTrigger::Effect::fade ? QStringLiteral("fade") : QStringLiteral("evaporate")},
        {QStringLiteral("progress"), step.progress},
        {QStringLiteral("opacity"), step.opacity},
        {QStringLiteral("curve"), QVariantList{c.milliseconds(), c.x1, c.y1, c.x2, c.y2}},
    };
}

double Effects::seed(int tileSeed) const { return EvaporateTrigger::seed(tileSeed); }

QColor Effects::liquid(double fraction, double depth, bool dark) const
{
    return LiquidGauge::color(fraction, depth, dark);
}

double Effects::threshold() const { return EvaporateTrigger::threshold; }

double Effects::warmFrom() const { return LiquidGauge::warmFrom; }
