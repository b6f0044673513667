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
    SorvelToolTip {
        visible: hover.hovered
        text: mark.help
    }
}
