import QtQuick
import QtQuick.Templates as T
import Sorvel.Ui

// A vertical scroll area whose content fades out under its top and bottom
// edges while there is more to scroll. The fade is drawn in `fadeColor`,
// which must be the colour behind the area.
Flickable {
    id: scroll

    property color fadeColor: Look.canvas
    property real fadeLength: 28

    clip: true
    boundsBehavior: Flickable.StopAtBounds
    flickableDirection: Flickable.VerticalFlick
    contentWidth: width

    T.ScrollBar.vertical: SorvelScrollBar {}

    Rectangle {
        parent: scroll
        z: 10
        anchors.top: parent.top
        anchors.left: parent.left
        anchors.right: parent.right
        height: scroll.fadeLength
        opacity: Math.max(0, Math.min(1, scroll.contentY / scroll.fadeLength))
        gradient: Gradient {
            GradientStop { position: 0; color: scroll.fadeColor }
            GradientStop { position: 1; color: Qt.rgba(scroll.fadeColor.r, scroll.fadeColor.g, scroll.fadeColor.b, 0) }
        }
    }
    Rectangle {
        parent: scroll
        z: 10
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        height: scroll.fadeLength
        opacity: Math.max(0, Math.min(1, (scroll.contentHeight - scroll.contentY - scroll.height) / scroll.fadeLength))
        gradient: Gradient {
            GradientStop { position: 0; color: Qt.rgba(scroll.fadeColor.r, scroll.fadeColor.g, scroll.fadeColor.b, 0) }
            GradientStop { position: 1; color: scroll.fadeColor }
        }
    }
}
