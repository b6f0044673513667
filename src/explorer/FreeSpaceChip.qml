import QtQuick
import Sorvel.Ui

// The root volume's free space: a small bar of the used share (magma from 90 %
// full) and "{free} free"; the help gives the whole story.
Rectangle {
    id: chip

    property bool compact: false

    visible: Shell.hasFreeSpace
    implicitWidth: row.implicitWidth + 20
    implicitHeight: 28
    radius: height / 2
    color: hover.hovered ? Look.raised : Look.surface
    border.width: 1
    border.color: Look.line

    Accessible.role: Accessible.StaticText
    Accessible.name: Shell.freeHelp

    Row {
        id: row

        anchors.centerIn: parent
        spacing: 8

        MoltenBar {
            anchors.verticalCenter: parent.verticalCenter
            width: 16
            height: 6
            fraction: Shell.usedFraction
            tint: Shell.usedFraction >= 0.9 ? Look.magma : undefined
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            visible: !chip.compact
            text: Shell.freeText
            font.pixelSize: 12
            color: Look.ink2
        }
    }

    HoverHandler {
        id: hover
    }
    SorvelToolTip {
        visible: hover.hovered
        text: Shell.freeHelp
    }
}
