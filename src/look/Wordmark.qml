import QtQuick
import Sorvel.Ui

// The product's name as a mark: a droplet and "Sorvel Cleaner".
Row {
    id: mark

    property real size: 15
    property bool showName: true

    spacing: size * 0.4

    Accessible.role: Accessible.StaticText
    Accessible.name: qsTr("Sorvel Cleaner")

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        width: mark.size * 1.5
        height: width
        radius: width * 0.32
        gradient: SorvelGradient {}

        SymbolIcon {
            anchors.centerIn: parent
            name: "humidity.fill"
            size: mark.size
            color: Look.onAccent
        }
    }
    Text {
        anchors.verticalCenter: parent.verticalCenter
        visible: mark.showName
        text: qsTr("Sorvel")
        font.pixelSize: mark.size
        font.weight: Font.Bold
        font.letterSpacing: -0.2
        color: Look.ink
    }
    Text {
        anchors.verticalCenter: parent.verticalCenter
        visible: mark.showName
        leftPadding: -mark.size * 0.15
        text: qsTr("Cleaner")
        font.pixelSize: mark.size
        font.weight: Font.Normal
        color: Look.ink2
    }
}
