import QtQuick
import Sorvel.Ui

// Stand-in for the steamer until its drawing lands.
Item {
    property real waterLevel: 0.12
    property bool jetting: false
    readonly property point nozzle: Qt.point(-52.8, 32.4)

    width: 96
    height: 84
    scale: 1.2
    rotation: -24

    Rectangle {
        anchors.fill: parent
        radius: 20
        color: Look.accent
        opacity: 0.5
    }
}
