import QtQuick
import Sorvel.Ui

// The ring around the control that holds the keyboard focus: two points of the
// accent colour, drawn only while the keyboard is in use (FocusVisibility), so
// a click never leaves one behind. Put it inside the control and bind `shown`
// to the control's focus; it follows the control's outline at `offset` points
// outside it (negative: inside, for tiles in a clipped view).
Rectangle {
    id: ring

    property bool shown: false
    // The corner radius of what it goes around.
    property real baseRadius: 8
    property real offset: 3

    anchors.fill: parent
    anchors.margins: -offset
    radius: Math.max(0, baseRadius + offset)
    color: "transparent"
    border.width: 2
    border.color: Look.accent
    visible: FocusVisibility.keyboard && shown
    z: 10
}
