import QtQuick
import Sorvel.Ui

// An icon in its condition: `clean` as it is; `stained` paler, with the grime
// of its seed over it where the icon is; `bloated` swollen by 1.08 over a
// honey glow. What couldn't be read wears a lock.
Item {
    id: conditioned

    property real size: 64
    // The path in its lossless text form.
    property string path
    // "clean", "stained" or "bloated".
    property string condition: "clean"
    property int seed: 0
    property bool dim: false
    property bool unreadable: false

    readonly property bool stained: condition === "stained"
    readonly property bool bloated: condition === "bloated"

    width: size
    height: size

    Image {
        // One glow size for large icons and one for small, both scaled by 1.1.
        readonly property real extent: (conditioned.size >= 48 ? 84 : 52) * 1.1

        anchors.centerIn: parent
        visible: conditioned.bloated
        width: extent
        height: extent
        opacity: 0.28
        source: visible ? StageAssets.url("honey-glow.png") : ""
        // Qt.size makes a QSizeF, which the engine turns into the QSize this
        // takes; the linter of Qt 6.4 does not know that conversion.
        sourceSize: Qt.size(128, 128) // qmllint disable type
        smooth: true
    }
    Image {
        anchors.centerIn: parent
        width: conditioned.size
        height: conditioned.size
        scale: conditioned.bloated ? 1.08 : 1
        opacity: conditioned.dim ? 0.5 : conditioned.unreadable ? 0.4 : 1
        // Rendered at twice the size, sharp on high-density screens too.
        sourceSize: Qt.size(Math.ceil(conditioned.size * 2), Math.ceil(conditioned.size * 2)) // qmllint disable type
        source: conditioned.path.length === 0 ? ""
              : conditioned.stained ? Look.stainedIcon(conditioned.path, conditioned.seed)
              : Look.fileIcon(conditioned.path)
        fillMode: Image.PreserveAspectFit
        smooth: true
        mipmap: true
        cache: true
    }
    Rectangle {
        visible: conditioned.unreadable
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        width: Math.max(14, conditioned.size * 0.38)
        height: width
        radius: width / 2
        color: Look.raised
        border.width: 1
        border.color: Look.withAlpha(Look.ember, 0.6)
        SymbolIcon {
            anchors.centerIn: parent
            name: "lock.fill"
            size: parent.width * 0.5
            color: Look.ember
        }
    }
}
