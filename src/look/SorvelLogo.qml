import QtQuick
import QtQuick.Shapes
import Sorvel.Ui

// The logo: a droplet in the accent gradient with two wisps of steam rising
// beside its tip, drawn in a square of `size`.
Item {
    id: logo

    property real size: 24

    implicitWidth: size
    implicitHeight: size
    width: implicitWidth
    height: implicitHeight
    // Smooth edges at every size: the shapes are drawn at the logo's own size
    // into a multisampled layer.
    layer.enabled: true
    layer.samples: 4
    layer.smooth: true

    // The drop: a round body with its tip up. In a frame of 100.
    component Droplet: ShapePath {
        strokeColor: "transparent"
        startX: 50
        startY: 30

        PathCubic { x: 74; y: 70; control1X: 58; control1Y: 42; control2X: 74; control2Y: 54 }
        PathArc { x: 26; y: 70; radiusX: 24; radiusY: 24 }
        PathCubic { x: 50; y: 30; control1X: 26; control1Y: 54; control2X: 42; control2Y: 42 }
    }

    component Wisp: ShapePath {
        strokeColor: Look.accent
        strokeWidth: 6.5
        capStyle: ShapePath.RoundCap
        joinStyle: ShapePath.RoundJoin
        fillColor: "transparent"
    }

    Shape {
        width: 100
        height: 100
        scale: logo.size / 100
        transformOrigin: Item.TopLeft

        Droplet {
            fillGradient: LinearGradient {
                x1: 30
                y1: 30
                x2: 66
                y2: 94
                GradientStop { position: 0; color: Look.sorvelGradient[0] }
                GradientStop { position: 0.5; color: Look.sorvelGradient[1] }
                GradientStop { position: 1; color: Look.sorvelGradient[2] }
            }
        }
        // Light on the drop's left flank.
        ShapePath {
            strokeColor: Look.withAlpha(Look.sorvelGradient[0], 0.85)
            strokeWidth: 5
            capStyle: ShapePath.RoundCap
            fillColor: "transparent"
            startX: 35
            startY: 64

            PathQuad { x: 43; y: 82; controlX: 34; controlY: 77 }
        }
        Wisp {
            startX: 30
            startY: 36

            PathCubic { x: 27; y: 19; control1X: 22; control1Y: 30; control2X: 33; control2Y: 25 }
            PathCubic { x: 29; y: 5; control1X: 22; control1Y: 14; control2X: 25; control2Y: 9 }
        }
        Wisp {
            startX: 70
            startY: 38

            PathCubic { x: 73; y: 21; control1X: 78; control1Y: 32; control2X: 67; control2Y: 27 }
            PathCubic { x: 71; y: 7; control1X: 78; control1Y: 16; control2X: 75; control2Y: 11 }
        }
    }
}
