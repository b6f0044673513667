import QtQuick
import Sorvel.Ui

// The title line of a shelf: a title, a detail in smaller type after it, and
// room on the right for a trailing view.
Item {
    id: shelf

    property string title
    property string detail
    default property alias trailing: trailingSlot.data

    implicitHeight: 34

    Row {
        anchors.left: parent.left
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 8
        spacing: 8

        Text {
            id: titleText

            text: shelf.title
            font.pixelSize: 15
            font.weight: Font.Bold
            color: Look.ink
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Text {
            anchors.baseline: titleText.baseline
            visible: shelf.detail.length > 0
            text: shelf.detail
            font.pixelSize: 12
            color: Look.ink3
        }
    }
    Row {
        id: trailingSlot

        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 6
        spacing: 8
    }
}
