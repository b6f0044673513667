import QtQuick
import Sorvel.Ui

// The product's name as a mark: the logo, a droplet with steam, and "Sorvel
// Cleaner".
Row {
    id: mark

    property real size: 15
    property bool showName: true

    spacing: size * 0.4

    Accessible.role: Accessible.StaticText
    Accessible.name: qsTr("Sorvel Cleaner")

    SorvelLogo {
        anchors.verticalCenter: parent.verticalCenter
        size: mark.size * 1.5
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
