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
        property string actionTitle
        property string toastId

        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(overlay.width - 40, row.implicitWidth + (capsule.actionTitle.length > 0 ? 12 : 32))
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
                width: Math.min(implicitWidth, overlay.width - (capsule.actionTitle.length > 0 ? 190 : 100))
            }
            // The toast's one action ("Undo"), there as long as the toast is.
            Rectangle {
                id: action

                objectName: "toastAction"
                anchors.verticalCenter: parent.verticalCenter
                visible: capsule.actionTitle.length > 0
                width: actionText.implicitWidth + 22
                height: 26
                radius: height / 2
                color: actionHover.hovered ? Look.withAlpha(Look.accent, 0.28) : Look.withAlpha(Look.accent, 0.16)
                activeFocusOnTab: visible && overlay.present
                Accessible.role: Accessible.Button
                Accessible.name: capsule.actionTitle
                Accessible.onPressAction: action.trigger()
                Keys.onReturnPressed: action.trigger()
                Keys.onEnterPressed: action.trigger()
                Keys.onSpacePressed: action.trigger()

                function trigger() {
                    if (overlay.present)
                        AppState.triggerToastAction(capsule.toastId);
                }

                FocusRing {
                    shown: action.activeFocus
                    baseRadius: action.radius
                }
                Text {
                    id: actionText

                    anchors.centerIn: parent
                    text: capsule.actionTitle
                    font.pixelSize: 13
                    font.weight: Font.DemiBold
                    color: Look.accent
                }
                HoverHandler {
                    id: actionHover

                    cursorShape: Qt.PointingHandCursor
                }
                TapHandler {
                    onTapped: action.trigger()
                }
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
            capsule.actionTitle = toast.actionTitle ?? "";
            capsule.toastId = toast.id;
        }
    }
}
