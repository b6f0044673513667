pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Sorvel.Ui

// A vertical scroll area whose content fades out under its top and bottom
// edges while there is more to scroll that way. With a graphics API the
// content itself turns transparent, whatever lies behind it; the software
// renderer, which draws no shader effects, lays a gradient of `fadeColor` (the
// colour behind the area) over the edges instead.
Flickable {
    id: scroll

    property color fadeColor: Look.canvas
    property real fadeLength: 28
    readonly property real topStrength: Math.max(0, Math.min(1, contentY / fadeLength))
    readonly property real bottomStrength: Math.max(0, Math.min(1, (contentHeight - contentY - height) / fadeLength))
    readonly property bool shaded: GraphicsInfo.api !== GraphicsInfo.Software

    clip: true
    boundsBehavior: Flickable.StopAtBounds
    flickableDirection: Flickable.VerticalFlick
    contentWidth: width

    T.ScrollBar.vertical: SorvelScrollBar {}

    // Scrolls just far enough to show `item`, a descendant of the content.
    function reveal(item: Item) {
        const y = item.mapToItem(scroll.contentItem, 0, 0).y;
        if (y < scroll.contentY)
            scroll.contentY = Math.max(0, y);
        else if (y + item.height > scroll.contentY + scroll.height)
            scroll.contentY = Math.min(y + item.height - scroll.height, Math.max(0, scroll.contentHeight - scroll.height));
    }

    layer.enabled: shaded && height > 0 && (topStrength > 0 || bottomStrength > 0)
    layer.effect: ShaderEffect {
        readonly property real topFade: scroll.fadeLength / Math.max(1, scroll.height)
        readonly property real bottomFade: scroll.fadeLength / Math.max(1, scroll.height)
        readonly property real topStrength: scroll.topStrength
        readonly property real bottomStrength: scroll.bottomStrength

        fragmentShader: "qrc:/sorvel/shaders/fade.frag.qsb"
    }

    Rectangle {
        parent: scroll
        z: 10
        visible: !scroll.shaded
        anchors.top: parent.top
        anchors.left: parent.left
        anchors.right: parent.right
        height: scroll.fadeLength
        opacity: scroll.topStrength
        gradient: Gradient {
            GradientStop { position: 0; color: scroll.fadeColor }
            GradientStop { position: 1; color: Qt.rgba(scroll.fadeColor.r, scroll.fadeColor.g, scroll.fadeColor.b, 0) }
        }
    }
    Rectangle {
        parent: scroll
        z: 10
        visible: !scroll.shaded
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        height: scroll.fadeLength
        opacity: scroll.bottomStrength
        gradient: Gradient {
            GradientStop { position: 0; color: Qt.rgba(scroll.fadeColor.r, scroll.fadeColor.g, scroll.fadeColor.b, 0) }
            GradientStop { position: 1; color: scroll.fadeColor }
        }
    }
}
