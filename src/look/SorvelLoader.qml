pragma ComponentBehavior: Bound
import QtQuick
import Sorvel.Ui

// Work under way: three puffs of steam rising in turn inside a square of
// `size`, one cycle a second. It moves only while visible and not under
// reduced motion; otherwise the puffs stand still and nothing runs.
Item {
    id: loader

    property real size: 16
    // Kept for callers that set it; the puffs carry their own tone.
    property color tint: Look.accent
    readonly property bool moving: visible && !Look.reducedMotion
    readonly property var puffs: StageAssets.puffs(Look.dark)
    // 0 to 1 around one cycle.
    property real clock: 0.3

    implicitWidth: size
    implicitHeight: size

    Accessible.role: Accessible.Animation
    Accessible.name: qsTr("Working")

    // A cycle of 1.6 s of the steam's own time, played at a time factor of
    // 1.6.
    NumberAnimation {
        target: loader
        property: "clock"
        from: 0
        to: 1
        duration: 1600 / 1.6
        loops: Animation.Infinite
        running: loader.moving
    }

    Repeater {
        model: loader.puffs.length > 0 ? 3 : 0

        delegate: Image {
            required property int index

            // 0 born at the bottom, 1 gone at the top.
            readonly property real p: {
                const t = loader.clock + index / 3;
                return t - Math.floor(t);
            }
            readonly property real d: loader.size * (0.7 + 0.45 * p)

            x: loader.size / 2 - d / 2 + Math.sin(p * 6.283 + index * 2.1) * loader.size * 0.1
            y: loader.size * (0.66 - 0.36 * p) - d / 2
            width: d
            height: d
            source: loader.puffs[(index * 2) % loader.puffs.length]
            sourceSize.width: 96
            sourceSize.height: 96
            smooth: true
            rotation: index * 120 + p * 40
            opacity: Math.sin(Math.PI * p)
        }
    }
}
