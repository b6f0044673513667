import QtQuick
import Sorvel.Ui

// The card a sheet stands on: a raised panel with a symbol and a title at the
// top, the sheet's content below, and its buttons at the bottom right.
Rectangle {
    id: card

    property string symbol
    property color symbolColor: Look.accent
    property string title
    default property alias content: body.data
    property alias buttons: buttonRow.data

    implicitWidth: 460
    implicitHeight: column.implicitHeight + 48
    radius: 18
    color: Look.panel
    border.width: 1
    border.color: Look.lineStrong

    Accessible.role: Accessible.Dialog
    Accessible.name: title

    Column {
        id: column

        x: 24
        y: 24
        width: card.width - 48
        spacing: 14

        Row {
            spacing: 10

            SymbolIcon {
                anchors.verticalCenter: parent.verticalCenter
                visible: card.symbol.length > 0
                name: card.symbol
                size: 22
                color: card.symbolColor
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: card.title
                font.pixelSize: 17
                font.weight: Font.Bold
                color: Look.ink
            }
        }
        Column {
            id: body

            width: parent.width
            spacing: 8
        }
        Item {
            width: parent.width
            height: buttonRow.implicitHeight

            Row {
                id: buttonRow

                anchors.right: parent.right
                spacing: 10
            }
        }
    }
}
