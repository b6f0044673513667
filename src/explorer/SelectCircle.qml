import QtQuick
import Sorvel.Ui

// The selection tick of a tile: on when the tile is selected (itself or through
// a folder), fainter when inherited, with its help text.
SorvelCheck {
    id: circle

    objectName: "selectCircle"

    property bool isOn: false
    property bool hovering: false

    checked: isOn && !inherited
    // The tile takes Space itself.
    focusPolicy: Qt.NoFocus
    Accessible.name: isOn ? qsTr("Deselect") : qsTr("Select for cleaning")
    opacity: inherited ? 0.55 : (isOn || hovering || hovered ? 1 : 0.7)

    // Made the first time it is wanted: most tiles never show it.
    // The component uses the ids of this file, as Qt 6.4 allows (see EntryTile).
    // qmllint disable unqualified
    Loader {
        id: helpHolder

        readonly property bool wanted: circle.hovered

        anchors.fill: parent
        active: false
        onWantedChanged: if (wanted) active = true
        sourceComponent: Item {
            SorvelToolTip {
                visible: helpHolder.status === Loader.Ready && helpHolder.wanted
                text: circle.isOn ? qsTr("Deselect") : qsTr("Select for cleaning")
            }
        }
    }
    // qmllint enable unqualified
    Behavior on opacity { Movement { curve: Look.standard(150) } }
}
