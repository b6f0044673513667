import QtQuick
import QtQuick.Templates as T
import Sorvel.Ui

// The round tick of rows and tiles. `checked`: selected itself; `inherited`:
// selected through a folder that holds it, drawn fainter. The owner decides
// what a click does (clicked), so the tick never changes on its own.
T.AbstractButton {
    id: control

    property bool inherited: false
    property real size: 18

    implicitWidth: size
    implicitHeight: size
    hoverEnabled: true
    // In the Tab chain on every platform; rows and tiles that take Space
    // themselves leave their tick out.
    focusPolicy: Qt.StrongFocus

    Accessible.role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: checked || inherited

    background: Rectangle {
        radius: width / 2
        color: control.checked ? Look.accent : control.inherited ? Look.sorvelSubtle : control.hovered ? Look.surface : "transparent"
        border.width: control.checked ? 0 : 1.5
        border.color: control.inherited ? Look.accent : control.hovered ? Look.ink3 : Look.lineStrong

        Behavior on color { ColorMovement { curve: Look.press } }
    }

    FocusRing {
        shown: control.activeFocus
        baseRadius: control.width / 2
    }

    contentItem: Item {
        SymbolIcon {
            anchors.centerIn: parent
            visible: control.checked || control.inherited
            name: "checkmark"
            size: control.size * 0.66
            color: control.checked ? Look.onAccent : Look.accent
            scale: visible ? 1 : 0.6

            Behavior on scale { Movement { curve: Look.press } }
        }
    }
}
