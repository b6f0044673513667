import QtQuick
import Sorvel.Ui

// The warning mark of a tile whose removal needs a look first (honey) or would
// lose data (magma), with the verdict as its help.
Item {
    id: mark

    property string level
    property string help

    implicitWidth: 18
    implicitHeight: 18

    SymbolIcon {
        anchors.centerIn: parent
        name: mark.level === "danger" ? "exclamationmark.triangle.fill" : "exclamationmark.circle.fill"
        color: mark.level === "danger" ? Look.magma : Look.honey
        size: 15
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
                text: mark.help
            }
        }
    }
    // qmllint enable unqualified
}
