pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Shapes
import Sorvel.Ui

// The hand-held steamer that cleans the tiles: a body in the accent gradient
// with a water tank, a handle on its back and the nozzle plate at its front,
// standing turned so that the nozzle points down and to the left. Its tank
// shows how much is queued for cleaning.
//
// The item is a point: `x` and `y` place the steamer's centre, and the jet
// starts at that point plus `nozzle`. While `jetting` it trembles, driven by a
// timer of 30 ticks a second that runs only then; under reduced motion it
// stands still.
Item {
    id: steamer

    // 0 to 1: how high the water stands in the tank.
    property real waterLevel: 0.12
    property bool jetting: false
    // The nozzle tip as an offset from the centre, where the jet starts.
    readonly property point nozzle: Steamer.nozzle
    // The rotation the steamer stands at now, in degrees.
    readonly property alias angle: drawing.rotation

    readonly property bool trembling: jetting && !Look.reducedMotion
    property real shownLevel: Math.max(0, Math.min(1, waterLevel))
    property double trembleStart: 0

    width: 0
    height: 0
    activeFocusOnTab: false

    Accessible.role: Accessible.Graphic
    Accessible.name: qsTr("Steamer")

    Behavior on shownLevel { Movement { curve: Look.standard(450) } }

    onTremblingChanged: {
        trembleStart = Date.now();
        drawing.rotation = Steamer.angle(0, trembling);
    }

    Timer {
        interval: 33
        repeat: true
        running: steamer.trembling
        onTriggered: drawing.rotation = Steamer.angle((Date.now() - steamer.trembleStart) / 1000, true)
    }

    // The outline of the body: a tall head at the front, the lower back that
    // holds the tank. `inset` draws the same outline that far inside.
    component SteamerBody: Shape {
        id: body

        property real inset: 0
        property alias fillGradient: bodyPath.fillGradient
        property alias fillColor: bodyPath.fillColor
        property alias strokeColor: bodyPath.strokeColor
        property alias strokeWidth: bodyPath.strokeWidth

        // The front edge, the top of the head, the top of the back, the rear
        // edge and the base.
        readonly property real front: 6 + inset
        readonly property real crown: 30 + inset
        readonly property real back: 46 + inset
        readonly property real rear: 92 - inset
        readonly property real base: 70 - inset
        readonly property real r: Math.max(1, 9 - inset)

        anchors.fill: parent

        ShapePath {
            id: bodyPath

            strokeWidth: 1.2
            joinStyle: ShapePath.RoundJoin
            startX: body.front + body.r
            startY: body.crown

            PathLine { x: 27; y: body.crown }
            PathCubic {
                x: 44 - body.inset * 0.4
                y: body.back
                control1X: 36
                control1Y: body.crown
                control2X: 35
                control2Y: body.back
            }
            PathLine { x: body.rear - body.r; y: body.back }
            PathArc { x: body.rear; y: body.back + body.r; radiusX: body.r; radiusY: body.r }
            PathLine { x: body.rear; y: body.base - body.r }
            PathArc { x: body.rear - body.r; y: body.base; radiusX: body.r; radiusY: body.r }
            PathLine { x: body.front + body.r; y: body.base }
            PathArc { x: body.front; y: body.base - body.r; radiusX: body.r; radiusY: body.r }
            PathLine { x: body.front; y: body.crown + body.r }
            PathArc { x: body.front + body.r; y: body.crown; radiusX: body.r; radiusY: body.r }
        }
    }

    // The handle: a loop rising from the back of the body.
    component SteamerHandle: Shape {
        id: handle

        property alias fillColor: handlePath.fillColor
        property alias strokeColor: handlePath.strokeColor

        anchors.fill: parent

        ShapePath {
            id: handlePath

            strokeWidth: 1.2
            joinStyle: ShapePath.RoundJoin
            startX: 49
            startY: 48

            PathCubic { x: 61; y: 11; control1X: 49; control1Y: 28; control2X: 51; control2Y: 11 }
            PathLine { x: 80; y: 11 }
            PathCubic { x: 91; y: 48; control1X: 89; control1Y: 11; control2X: 91; control2Y: 28 }
            PathLine { x: 81; y: 48 }
            PathCubic { x: 74; y: 23; control1X: 81; control1Y: 32; control2X: 80; control2Y: 23 }
            PathLine { x: 66; y: 23 }
            PathCubic { x: 59; y: 48; control1X: 60; control1Y: 23; control2X: 59; control2Y: 32 }
        }
    }

    // Drawn into a multisampled layer as big as the turned drawing, so that
    // the shapes' edges are smooth and stay sharp.
    Item {
        id: stage

        x: -80
        y: -80
        width: 160
        height: 160
        layer.enabled: true
        layer.samples: 4
        layer.smooth: true

        Item {
            id: drawing

            x: stage.width / 2 - Steamer.frame.width / 2
            y: stage.height / 2 - Steamer.frame.height / 2
            width: Steamer.frame.width
            height: Steamer.frame.height
            scale: Steamer.scale
            rotation: Steamer.stance

            SteamerHandle {
                fillColor: Look.panel
                strokeColor: Look.sorvelGradient[2]
            }
            SteamerBody {
                strokeColor: Look.sorvelGradient[2]
                fillGradient: LinearGradient {
                    x1: 0
                    y1: 30
                    x2: 0
                    y2: 70
                    GradientStop { position: 0; color: Look.sorvelGradient[0] }
                    GradientStop { position: 0.45; color: Look.sorvelGradient[1] }
                    GradientStop { position: 1; color: Look.sorvelGradient[2] }
                }
            }
            // A highlight along the inside of the outline.
            SteamerBody {
                inset: 2.5
                fillColor: "transparent"
                strokeColor: Look.withAlpha(Look.sorvelGradient[0], 0.7)
                strokeWidth: 1
            }
            // The power button on the head.
            Rectangle {
                x: 15
                y: 36
                width: 7
                height: 7
                radius: 3.5
                color: Look.onAccent
                border.width: 1
                border.color: Look.withAlpha(Look.sorvelGradient[0], 0.8)
            }
            // The tank: a window onto the water.
            Rectangle {
                id: tank

                x: 50
                y: 52
                width: 35
                height: 13
                radius: 4
                color: Look.panel
                border.width: 1
                border.color: Look.sorvelGradient[2]

                Rectangle {
                    id: water

                    readonly property real full: tank.height - 3

                    x: 1.5
                    width: tank.width - 3
                    height: Math.max(0, full * steamer.shownLevel)
                    y: tank.height - 1.5 - height
                    radius: Math.min(2.5, height / 2)
                    color: Look.accent

                    // The water's surface catching the light.
                    Rectangle {
                        x: 2
                        y: 0.5
                        width: parent.width - 4
                        height: 1
                        visible: water.height > 2
                        color: Look.withAlpha(Look.sorvelGradient[0], 0.8)
                    }
                }
                // Marks of the scale on the glass.
                Repeater {
                    model: 3

                    delegate: Rectangle {
                        required property int index

                        x: tank.width - 7
                        y: 3 + index * 3.5
                        width: 3
                        height: 0.8
                        color: Look.withAlpha(Look.ink2, 0.6)
                    }
                }
            }
            // The nozzle plate at the front; its left edge is the tip.
            Rectangle {
                x: Steamer.drawnNozzle.x
                y: Steamer.drawnNozzle.y - height / 2
                width: 12
                height: 30
                radius: 4
                color: Look.panel
                border.width: 1.2
                border.color: Look.sorvelGradient[2]

                Repeater {
                    model: 4

                    delegate: Rectangle {
                        required property int index

                        x: 2.2
                        y: 5.5 + index * 5.5
                        width: 2.2
                        height: 2.2
                        radius: 1.1
                        color: Look.accent
                    }
                }
            }
            Item {
                objectName: "nozzleTip"
                x: Steamer.drawnNozzle.x
                y: Steamer.drawnNozzle.y
            }
        }
    }
}
