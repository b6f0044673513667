import QtQuick
import Sorvel.Ui

// The root volume's free space: a small gauge of the used share (warm from
// 90 % full) and "{free} free"; the help gives the whole story.
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

        LiquidGauge {
            id: gauge
            anchors.verticalCenter: parent.verticalCenter
            width: 16
            height: 16
            fraction: Shell.usedFraction
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
        onHoveredChanged: if (hovered) gauge.stir()
    }
    SorvelToolTip {
        visible: hover.hovered
        text: Shell.freeHelp
    }
}
