import QtQuick
import QtQuick.Templates as T
import Sorvel.Ui

// An on/off switch with an optional label to its left.
T.Switch {
    id: control

    implicitWidth: Math.max(implicitBackgroundWidth, implicitContentWidth + spacing + indicator.width)
    implicitHeight: 22
    spacing: 10
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    font.pixelSize: 13
    opacity: enabled ? 1 : 0.45

    indicator: Rectangle {
        x: control.text.length > 0 ? control.width - width : 0
        anchors.verticalCenter: parent.verticalCenter
        width: 34
        height: 20
        radius: height / 2
        color: control.checked ? Look.accent : control.hovered ? Look.lineStrong : Look.well
        border.width: control.checked ? 0 : 1
        border.color: Look.line

        FocusRing {
            shown: control.activeFocus
            baseRadius: parent.radius
        }

        Rectangle {
            width: 16
            height: 16
            radius: 8
            y: 2
            x: control.checked ? parent.width - width - 2 : 2
            color: control.checked ? Look.onAccent : Look.ink2

            Behavior on x { Movement { curve: Look.hover } }
        }

        Behavior on color { ColorMovement { curve: Look.hover } }
    }

    contentItem: Text {
        rightPadding: control.indicator.width + control.spacing
        text: control.text
        font: control.font
        color: Look.ink
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }
}
