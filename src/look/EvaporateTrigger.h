// EvaporateTrigger: how a tile or row that a removal takes leaves the screen,
// and how it comes back when the removal fails for it. Pure functions; any
// thread.
#pragma once

#include "Motion.h"

// Three cases:
//   reduced motion  any      a plain fade: opacity 0 while vanishing, 1 otherwise,
//                            on the standard curve of 0.25 s; no shader
//   full motion     vanishing  evaporation to progress 1 on the evaporate curve
//   full motion     back       evaporation back to 0 on the standard curve of
//                              0.2 s, so an item the removal left returns fast
class EvaporateTrigger
{
public:
    enum class Effect : quint8 { fade, evaporate };

    struct Step {
        Effect effect;
        double progress; // target of the evaporation, 0 or 1
        double opacity;  // target of the plain opacity, 0 or 1
        Motion::Curve curve;
    };

    static Step step(bool reducedMotion, bool isVanishing);

    // A tile's seed (0...996) as the effect's 0...1.
    static double seed(int tileSeed) { return double(tileSeed) / 997.0; }

    // Below this the effect is off, so resting items cost nothing.
    static constexpr double threshold = 0.001;
};
