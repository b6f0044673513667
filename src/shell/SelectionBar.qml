import QtQuick
import Sorvel.Ui

// What is selected across every area, and the way to the review. Items
// dragged from a row can be dropped on it.
Rectangle {
    id: bar

    property bool targeted: false

    implicitHeight: 56
    radius: 16
    // Opaque, so rows scrolling under the bar never show through its text;
    // the raised tint lies over the window's own ground.
    color: Look.canvas
    border.width: 0

    Rectangle {
        anchors.fill: parent
        radius: bar.radius
        color: Look.raised
    }

    // The border: solid while a drag hovers, dashed otherwise; the gaps close
    // and the colour turns over 0.2 seconds (at once under reduced motion).
    Canvas {
        id: border
        objectName: "selectionBorder"
        anchors.fill: parent
        property real solid: bar.targeted ? 1 : 0
        Behavior on solid { Movement { curve: Look.standard(200) } }
        onSolidChanged: requestPaint()
        onWidthChanged: requestPaint()
        onPaint: {
            const ctx = getContext("2d");
            ctx.reset();
            const from = Look.lineStrong;
            const to = Look.accent;
            const s = border.solid;
            ctx.strokeStyle = Qt.rgba(from.r + (to.r - from.r) * s, from.g + (to.g - from.g) * s,
                                      from.b + (to.b - from.b) * s, from.a + (to.a - from.a) * s);
            ctx.lineWidth = 1.5;
            ctx.setLineDash(s >= 1 ? [] : [5 + 4 * s, 4 * (1 - s)]);
            ctx.beginPath();
            ctx.roundedRect(1, 1, width - 2, height - 2, 15, 15);
            ctx.stroke();
        }
    }

    Column {
        x: 18
        anchors.verticalCenter: parent.verticalCenter
        Text {
            objectName: "selectionTotal"
            text: Shell.selectionTotal
            font.pixelSize: 15
            font.weight: Font.Bold
            color: Look.ink
        }
        Text {
            text: Shell.selectionSources
            font.pixelSize: 11
            color: Look.ink3
        }
    }
    Row {
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8
        SorvelButton {
            kind: SorvelButtonStyle.Ghost
            text: qsTr("Clear")
            toolTip: qsTr("Deselect everything")
            onClicked: Shell.clearSelection()
        }
        SorvelButton {
            objectName: "reviewButton"
            kind: SorvelButtonStyle.Primary
            symbol: "humidity.fill"
            text: qsTr("Review & Sorvelise…")
            toolTip: qsTr("Review everything selected in every tab, then sorvelise (%1)").arg(Shell.reviewShortcutText)
            onClicked: Shell.reviewSelection()
        }
    }
    Shortcut {
        sequence: "Ctrl+Backspace"
        enabled: !Shell.modal.isPresented
        onActivated: Shell.reviewSelection()
    }

    DropArea {
        anchors.fill: parent
        keys: ["application/json"]
        onEntered: bar.targeted = true
        onExited: bar.targeted = false
        onDropped: drop => {
            bar.targeted = false;
            if (Shell.dropItems([drop.getDataAsString("application/json")]))
                drop.accept(Qt.CopyAction);
        }
    }
}
