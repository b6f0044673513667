import QtQuick
import Sorvel.Ui

// A card: a rounded surface with a hairline edge, holding its content
// inside a padding.
Rectangle {
    id: card

    property real padding: 16
    default property alias content: body.data

    implicitWidth: body.childrenRect.width + 2 * padding
    implicitHeight: body.childrenRect.height + 2 * padding
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
