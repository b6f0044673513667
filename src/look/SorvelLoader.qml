pragma ComponentBehavior: Bound
import QtQuick
import Sorvel.Ui

// Work under way: three puffs of steam rising in turn. Under reduced motion
// they stand still.
Item {
    id: loader

    property real size: 16
    property color tint: Look.accent
    readonly property bool moving: visible && !Look.reducedMotion

    implicitWidth: size
    implicitHeight: size

    Accessible.role: Accessible.Animation
    Accessible.name: qsTr("Working")

    Repeater {
        model: 3

        delegate: Rectangle {
            id: puff

            required property int index
            property real phase: 0

            readonly property real d: loader.size * 0.34
            width: d
            height: d
            radius: d / 2
            color: loader.tint
            x: loader.size * (0.05 + index * 0.31)
            y: loader.size * 0.5 - d / 2 - phase * loader.size * 0.22
            opacity: loader.moving ? 0.35 + 0.65 * phase : 0.5 + index * 0.2

            SequentialAnimation {
                running: loader.moving
                loops: Animation.Infinite
                onStopped: puff.phase = 0

                PauseAnimation { duration: puff.index * 130 }
                NumberAnimation { target: puff; property: "phase"; from: 0; to: 1; duration: 300 }
                NumberAnimation { target: puff; property: "phase"; from: 1; to: 0; duration: 300 }
                PauseAnimation { duration: (2 - puff.index) * 130 }
            }
        }
    }
}
