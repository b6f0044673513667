import QtQuick
import Sorvel.Ui

// A small capsule label, tinted.
Rectangle {
    id: badge

    property string text
    property string symbol
    property color tint: Look.ink2

    implicitWidth: row.implicitWidth + 12
    implicitHeight: 18
    radius: height / 2
    color: Look.withAlpha(tint, 0.14)
    border.width: 1
    border.color: Look.withAlpha(tint, 0.22)

    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Row {
        id: row

        anchors.centerIn: parent
        spacing: 3

        SymbolIcon {
            anchors.verticalCenter: parent.verticalCenter
            visible: badge.symbol.length > 0
            name: badge.symbol
            size: 10
            color: badge.tint
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: badge.text
            font: Look.micro
            color: badge.tint
        }
    }
}
