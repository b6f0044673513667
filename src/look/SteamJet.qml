pragma ComponentBehavior: Bound
import QtQuick
import Sorvel.Ui

// The steamer's jet: puffs of steam born at `from` fly along the line to `to`,
// where they billow out and fade, several in flight at once. `from` and `to`
// are in this item's coordinates; the puffs may draw beyond its bounds.
//
// One timer of 30 ticks a second moves them and runs only while steam shows
// or is about to. Under reduced motion the jet draws nothing and runs nothing.
Item {
    id: jet

    property point from
    property point to
    property bool active: false
    // 0 to 1, how strongly the steam shows: follows `active`, rising over
    // 0.2 s and falling over 0.4 s.
    property real strength: 0

    // Seconds of jet time, the clock of the puffs.
    property real clock: 0
    property double lastTick: 0
    readonly property bool flowing: !Look.reducedMotion && (active || strength > 0)
    readonly property var puffs: StageAssets.puffs(Look.dark)
    readonly property int inFlight: 12
    // Seconds from birth at `from` to gone.
    readonly property real life: 0.95

    // A fixed pseudo-random number from 0 to 1 for `n`.
    function noise(n: real): real {
        const s = Math.sin(n) * 43758.5453;
        return s - Math.floor(s);
    }

    visible: !Look.reducedMotion && strength > 0
    Accessible.ignored: true

    onFlowingChanged: {
        if (flowing)
            lastTick = Date.now();
        else if (Look.reducedMotion)
            strength = 0;
    }

    Timer {
        interval: 33
        repeat: true
        running: jet.flowing
        onTriggered: {
            const now = Date.now();
            const step = Math.min(0.1, Math.max(0, (now - jet.lastTick) / 1000));
            jet.lastTick = now;
            jet.clock += step;
            jet.strength = jet.active ? Math.min(1, jet.strength + step / 0.2) : Math.max(0, jet.strength - step / 0.4);
        }
    }

    Repeater {
        model: !Look.reducedMotion && jet.puffs.length > 0 ? jet.inFlight : 0

        delegate: Image {
            id: puff

            required property int index

            // Where in its life this puff is (0 born, 1 gone), and which life.
            readonly property real age: jet.clock / jet.life + index / jet.inFlight
            readonly property real p: age - Math.floor(age)
            readonly property real cycle: Math.floor(age)
            readonly property real wander: jet.noise(cycle * 12.9898 + index * 78.233)
            readonly property real swell: jet.noise(cycle * 39.3467 + index * 11.135)

            readonly property real dx: jet.to.x - jet.from.x
            readonly property real dy: jet.to.y - jet.from.y
            readonly property real length: Math.max(1, Math.sqrt(dx * dx + dy * dy))
            // Fast out of the nozzle, slowing as it arrives.
            readonly property real along: 1 - Math.pow(1 - p, 2.2)
            // Sideways, little at the nozzle and wide where it lands.
            readonly property real side: (wander - 0.5) * (4 + 40 * p * p)
            readonly property real ahead: (swell - 0.5) * 16 * p
            readonly property real d: 14 + 46 * p + 14 * swell * p
            readonly property real cx: jet.from.x + dx * along + (-dy * side + dx * ahead) / length
            readonly property real cy: jet.from.y + dy * along + (dx * side + dy * ahead) / length

            x: cx - d / 2
            y: cy - d / 2
            width: d
            height: d
            source: jet.puffs[index % jet.puffs.length]
            sourceSize.width: 96
            sourceSize.height: 96
            smooth: true
            rotation: wander * 360 + p * 50 * (swell - 0.5)
            opacity: jet.strength * Math.min(1, p / 0.12) * (1 - Math.max(0, (p - 0.55) / 0.45)) * 0.9
        }
    }
}
