import QtQuick
import QtQuick.Shapes
import Sorvel.Ui

// The window's background: the canvas colour, a linear wash of the accent from
// the top, a radial glow at the upper right and the fog over them.
Rectangle {
    id: backdrop

    color: Look.canvas

    Rectangle {
        anchors.fill: parent
        gradient: Gradient {
            GradientStop { position: 0; color: Look.withAlpha(Look.accent, Look.dark ? 0.07 : 0.06) }
            GradientStop { position: 0.45; color: "transparent" }
        }
    }
    Shape {
        anchors.fill: parent

        ShapePath {
            strokeColor: "transparent"
            fillGradient: RadialGradient {
                centerX: backdrop.width * 0.82
                centerY: -backdrop.height * 0.1
                centerRadius: Math.max(backdrop.width, backdrop.height) * 0.62
                focalX: centerX
                focalY: centerY

                GradientStop { position: 0; color: Look.withAlpha(Look.accent, Look.dark ? 0.1 : 0.09) }
                GradientStop { position: 1; color: "transparent" }
            }
            startX: 0
            startY: 0
            PathLine { x: backdrop.width; y: 0 }
            PathLine { x: backdrop.width; y: backdrop.height }
            PathLine { x: 0; y: backdrop.height }
            PathLine { x: 0; y: 0 }
        }
    }
    FogLayer {
        anchors.fill: parent
    }
}
