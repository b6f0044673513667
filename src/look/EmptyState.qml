import QtQuick
import Sorvel.Ui

// What an area shows when it has nothing to show: a symbol, a title, a line
// of text and the buttons placed inside it.
Item {
    id: state

    property string symbol
    property string title
    property string text
    default property alias actions: buttons.data

    implicitWidth: column.implicitWidth
    implicitHeight: column.implicitHeight

    Column {
        id: column

        anchors.centerIn: parent
        width: Math.min(420, state.width > 0 ? state.width - 32 : 420)
        spacing: 10

        SymbolIcon {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: state.symbol.length > 0
            name: state.symbol
            size: 40
            color: Look.ink3
        }
        Item {
            width: 1
            height: 4
            visible: state.symbol.length > 0
        }
        Text {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: state.title
            font.pixelSize: 19
            font.weight: Font.DemiBold
            color: Look.ink
            wrapMode: Text.Wrap
        }
        Text {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            visible: state.text.length > 0
            text: state.text
            font.pixelSize: 13
            color: Look.ink2
            wrapMode: Text.Wrap
            lineHeight: 1.15
        }
        Item {
            width: 1
            height: 6
            visible: buttons.children.length > 0
        }
        Row {
            id: buttons

            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 10
        }
    }
}
