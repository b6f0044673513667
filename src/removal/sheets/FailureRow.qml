import QtQuick
import Sorvel.Ui

// One path that stayed behind: its name, and under it where it is (or, for
// an unexpected error, the system's words); copy and reveal on hover.
Item {
    id: row

    required property var modelData

    height: 40

    HoverHandler {
        id: hover
    }
    FileIconView {
        id: icon
        anchors.verticalCenter: parent.verticalCenter
        path: row.modelData.path
        size: 22
    }
    Column {
        anchors.left: icon.right
        anchors.leftMargin: 8
        anchors.right: actions.left
        anchors.rightMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        Text {
            width: parent.width
            text: row.modelData.name
            elide: Text.ElideMiddle
            maximumLineCount: 1
            font.pixelSize: 12
            color: Look.ink
        }
        Text {
            width: parent.width
            text: row.modelData.subtitle
            elide: Text.ElideMiddle
            maximumLineCount: 1
            font.pixelSize: 11
            color: Look.ink3
        }
    }
    PathActions {
        id: actions
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        path: row.modelData.path
        opacity: hover.hovered ? 1 : 0
        enabled: hover.hovered
    }
}
