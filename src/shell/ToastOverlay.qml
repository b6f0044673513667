import QtQuick
import Sorvel.Ui

// The toast: its symbol and message in an accent-tinted capsule near the
// bottom edge. It leaves by itself (Shell.toastTimer); a newer toast replaces
// it at once.
Item {
    id: overlay

    readonly property var toast: AppState.toast
    readonly property bool present: toast !== undefined && toast.id !== undefined

    implicitHeight: capsule.height

    Rectangle {
        id: capsule

        property string message
        property string symbol

        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(overlay.width - 40, row.implicitWidth + 32)
        height: 38
        radius: height / 2
        color: Look.panel
        border.width: 1
        border.color: Look.withAlpha(Look.accent, 0.45)
        opacity: overlay.present ? 1 : 0
        scale: overlay.present ? 1 : 0.95
        visible: opacity > 0
        transform: Translate { y: overlay.present ? 0 : 16; Behavior on y { Movement { curve: Look.standard(250) } } }

        Accessible.role: Accessible.AlertMessage
        Accessible.name: message

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: Look.sorvelSubtle
        }

        Row {
            id: row

            anchors.centerIn: parent
            spacing: 8

            SymbolIcon {
                anchors.verticalCenter: parent.verticalCenter
                visible: capsule.symbol.length > 0
                name: capsule.symbol
                size: 16
                color: Look.accent
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: capsule.message
                font.pixelSize: 13
                font.weight: Font.Medium
                color: Look.ink
                elide: Text.ElideRight
                width: Math.min(implicitWidth, overlay.width - 100)
            }
        }

        Behavior on opacity { Movement { curve: Look.standard(250) } }
        Behavior on scale { Movement { curve: Look.standard(250) } }
    }

    // Keep the last words while the capsule fades out.
    onToastChanged: {
        if (toast && toast.id) {
            capsule.message = toast.message;
            capsule.symbol = toast.symbol;
        }
    }
}
