import QtQuick
import Sorvel.Ui

// Shown instead of the selection tick on what the safety guard keeps.
Rectangle {
    id: mark

    implicitWidth: 20
    implicitHeight: 20
    radius: 10
    color: Look.raised
    border.width: 1
    border.color: Look.line

    SymbolIcon {
        anchors.centerIn: parent
        name: "lock.fill"
        size: 9
        color: Look.ink2
    }
    HoverHandler {
        id: hover
    }
    // Made the first time it is wanted: most tiles never show it.
    // The component uses the ids of this file, as Qt 6.4 allows (see EntryTile).
    // qmllint disable unqualified
    Loader {
        id: helpHolder

        readonly property bool wanted: hover.hovered

        anchors.fill: parent
        active: false
        onWantedChanged: if (wanted) active = true
        sourceComponent: Item {
            SorvelToolTip {
                visible: helpHolder.status === Loader.Ready && helpHolder.wanted
                text: qsTr("Kept by the safety guard. Open it to clean inside")
            }
        }
    }
    // qmllint enable unqualified
}
