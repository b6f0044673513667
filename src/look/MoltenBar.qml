import QtQuick
import Sorvel.Ui

// A share as a bar: a capsule of the well colour, filled to `fraction` of its
// width in `tint`, or in the flat accent gradient while `tint` is unset.
Rectangle {
    id: bar

    property real fraction: 0
    // A colour, or undefined for the accent gradient.
    property var tint: undefined
    readonly property real clamped: Math.max(0, Math.min(1, isNaN(fraction) ? 0 : fraction))

    implicitWidth: 110
    implicitHeight: 6
    radius: height / 2
    color: Look.well
    clip: true

    Accessible.role: Accessible.ProgressBar
    Accessible.name: Math.round(clamped * 100) + "%"

    Rectangle {
        height: parent.height
        width: bar.clamped * bar.width
        visible: width > 0.5
        radius: bar.radius
        color: bar.tint === undefined ? "transparent" : bar.tint

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            visible: bar.tint === undefined
            gradient: Gradient {
                orientation: Gradient.Horizontal

                GradientStop { position: 0; color: Look.sorvelFlatGradient[0] }
                GradientStop { position: 1; color: Look.sorvelFlatGradient[1] }
            }
        }

        Behavior on width { Movement { curve: Look.modal } }
    }
}
