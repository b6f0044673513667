import QtQuick
import QtQuick.Templates as T
import Sorvel.Ui

// A filter chip: a rounded label that is on or off, tinted when on. Takes
// the keyboard focus with Tab and toggles with Space.
T.Button {
    id: chip

    property bool on: false
    property color tint: Look.ink2

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: 26
    leftPadding: 11
    rightPadding: 11
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    font.pixelSize: 12
    font.weight: on ? Font.DemiBold : Font.Normal

    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checked: on
    Accessible.checkable: true

    contentItem: Row {
        spacing: 6
        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            visible: chip.tint !== Look.ink2
            width: 8
            height: 8
            radius: 4
            color: chip.tint
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: chip.text
            font: chip.font
            color: chip.on ? Look.ink : Look.ink2
        }
    }

    background: Rectangle {
        radius: height / 2
        color: chip.on ? Look.withAlpha(chip.tint, 0.18) : chip.hovered ? Look.glass : "transparent"
        border.width: 1
        border.color: chip.on ? Look.withAlpha(chip.tint, 0.6) : Look.line
    }

    FocusRing {
        shown: chip.activeFocus
        baseRadius: chip.height / 2
    }
}
