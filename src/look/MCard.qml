import QtQuick
import Sorvel.Ui

// A card: a rounded surface with a hairline edge, holding its content
// inside a padding. Its implicit size follows its first child.
Rectangle {
    id: card

    property real padding: 16
    default property alias content: body.data

    implicitWidth: (body.children.length > 0 ? body.children[0].implicitWidth : 0) + 2 * padding
    implicitHeight: (body.children.length > 0 ? body.children[0].implicitHeight : 0) + 2 * padding
    radius: 14
    color: Look.surface
    border.width: 1
    border.color: Look.line

    Item {
        id: body

        anchors.fill: parent
        anchors.margins: card.padding
    }
}
