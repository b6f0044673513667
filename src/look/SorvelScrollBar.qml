import QtQuick
import QtQuick.Templates as T
import Sorvel.Ui

// A thin scroll bar that shows while scrolling or hovered.
T.ScrollBar {
    id: control

    implicitWidth: vertical ? 10 : 100
    implicitHeight: horizontal ? 10 : 100
    padding: 2
    hoverEnabled: true
    minimumSize: 0.08
    visible: policy !== T.ScrollBar.AlwaysOff && size < 1

    contentItem: Rectangle {
        implicitWidth: 6
        implicitHeight: 6
        radius: 3
        color: control.pressed ? Look.ink3 : Look.lineStrong
        opacity: control.active || control.hovered ? 1 : 0

        Behavior on opacity { Movement { curve: Look.modal } }
    }
}
