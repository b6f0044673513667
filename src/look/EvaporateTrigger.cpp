#include "EvaporateTrigger.h"

EvaporateTrigger::Step EvaporateTrigger::step(bool reducedMotion, bool isVanishing)
{
    if (reducedMotion)
        return {Effect::fade, 0, isVanishing ? 0.0 : 1.0, Motion::standard(0.25)};
    if (isVanishing)
        return {Effect::evaporate, 1, 1, Motion::evaporate};
    return {Effect::evaporate, 0, 1, Motion::standard(0.2)};
}
