import QtQuick
import QtQuick.Shapes
import Sorvel.Ui

// The dashed frame and "Drop to scan" while a drag hovers over the window.
Item {
    id: hint

    property bool shown: false

    opacity: shown ? 1 : 0
    visible: opacity > 0

    Behavior on opacity { Movement { curve: Look.standard(180) } }

    Rectangle {
        anchors.fill: parent
        color: Look.withAlpha(Look.canvas, 0.7)
    }

    Shape {
        id: frame

        readonly property real r: 18

        anchors.fill: parent
        anchors.margins: 14
        layer.enabled: true
        layer.samples: 4

        ShapePath {
            strokeColor: Look.accent
            strokeWidth: 2
            strokeStyle: ShapePath.DashLine
            dashPattern: [4, 3]
            fillColor: "transparent"
            startX: frame.r
            startY: 1

            PathLine { x: frame.width - frame.r; y: 1 }
            PathArc { x: frame.width - 1; y: frame.r; radiusX: frame.r - 1; radiusY: frame.r - 1 }
            PathLine { x: frame.width - 1; y: frame.height - frame.r }
            PathArc { x: frame.width - frame.r; y: frame.height - 1; radiusX: frame.r - 1; radiusY: frame.r - 1 }
            PathLine { x: frame.r; y: frame.height - 1 }
            PathArc { x: 1; y: frame.height - frame.r; radiusX: frame.r - 1; radiusY: frame.r - 1 }
            PathLine { x: 1; y: frame.r }
            PathArc { x: frame.r; y: 1; radiusX: frame.r - 1; radiusY: frame.r - 1 }
        }
    }

    Column {
        anchors.centerIn: parent
        spacing: 10

        SymbolIcon {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "scope"
            size: 36
            color: Look.accent
        }
        Text {
            text: qsTr("Drop to scan")
            font.pixelSize: 19
            font.weight: Font.DemiBold
            color: Look.ink
        }
    }
}
