import QtQuick
import Sorvel.Ui

// Decides when and how its children evaporate: with full motion they dissolve
// upward on the evaporate curve while `isVanishing`, and come back fast when it
// turns false again (a removal that failed for them); under reduced motion they
// only fade, on the standard curve of 0.25 s.
EvaporateEffect {
    id: trigger

    property bool isVanishing: false
    // The tile's seed, 0...996.
    property int tileSeed: 0

    readonly property var step: Effects.evaporation(isVanishing, Look.reducedMotion)
    // The curve of the latest change, set before the values move so that
    // both animations take it.
    property var curve: step.curve

    seed: Effects.seed(tileSeed)

    // An item made while it vanishes goes from the start.
    Component.onCompleted: {
        progress = step.progress;
        opacity = step.opacity;
    }
    onStepChanged: {
        curve = step.curve;
        progress = step.progress;
        opacity = step.opacity;
    }

    Behavior on progress {
        Movement { curve: trigger.curve; essential: true }
    }
    Behavior on opacity {
        Movement { curve: trigger.curve; essential: true }
    }
}
