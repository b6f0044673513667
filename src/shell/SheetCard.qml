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
    // The height the window leaves for the card; the host sets it.
    property real available: 1e9
    // The one part of the content that gives way when the window is short
    // (a scrolling list); everything else keeps its height.
    property Item flexible: null
    // The height left for `flexible` once everything else has its own.
    readonly property real room: {
        let fixed = 48 + heading.height + buttonRow.implicitHeight + 2 * column.spacing;
        let shown = 0;
        for (let i = 0; i < body.children.length; ++i) {
            const child = body.children[i];
            if (!child.visible)
                continue;
            ++shown;
            if (child !== flexible)
                fixed += child.height;
        }
        return available - fixed - Math.max(0, shown - 1) * body.spacing;
    }

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
            id: heading

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
