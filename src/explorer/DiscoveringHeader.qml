import QtQuick
import Sorvel.Ui

// Above the growing tiles while a scan runs: what is being read, where the
// walk is now, and the running totals.
Item {
    id: header

    required property SpaceModel space

    implicitHeight: 64

    Column {
        anchors.left: parent.left
        anchors.right: totals.left
        anchors.rightMargin: 24
        anchors.verticalCenter: parent.verticalCenter
        spacing: 6

        Text {
            text: header.space.discoveringTitle
            font.pixelSize: 22
            font.weight: Font.Bold
            color: Look.ink
        }
        Text {
            width: parent.width
            text: header.space.scanPath
            elide: Text.ElideMiddle
            font.pixelSize: 11
            color: Look.ink3
        }
    }
    Column {
        id: totals

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Text {
            anchors.right: parent.right
            text: header.space.scanBytesText
            font.pixelSize: 28
            font.weight: Font.Bold
            color: Look.ink
        }
        Text {
            anchors.right: parent.right
            text: header.space.scanCountsText
            font.pixelSize: 12
            color: Look.ink3
        }
    }
}
