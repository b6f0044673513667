import QtQuick
import Sorvel.Ui

// What a dragged item looks like: its icon and its name.
Rectangle {
    id: chip

    property string name
    property string iconPath
    property bool isJunk: false

    width: Math.min(260, content.implicitWidth + 20)
    height: 30
    radius: 15
    color: Look.raised
    border.width: 1
    border.color: Look.lineStrong

    Row {
        id: content
        x: 10
        anchors.verticalCenter: parent.verticalCenter
        spacing: 6
        SymbolIcon {
            visible: chip.isJunk
            name: "sparkles"
            size: 16
            color: Look.accent
        }
        FileIconView {
            visible: !chip.isJunk
            path: chip.iconPath
            size: 18
        }
        Text {
            width: Math.min(implicitWidth, 210)
            text: chip.name
            elide: Text.ElideMiddle
            maximumLineCount: 1
            font.pixelSize: 12
            color: Look.ink
        }
    }
}
