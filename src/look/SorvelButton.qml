import QtQuick
import QtQuick.Templates as T
import Sorvel.Ui

// The application's button, in the kinds and sizes of SorvelButtonStyle.
T.Button {
    id: control

    property int kind: SorvelButtonStyle.Secondary
    property int size: SorvelButtonStyle.Regular
    property string symbol
    property string toolTip

    readonly property bool small: size === SorvelButtonStyle.Small
    readonly property bool large: size === SorvelButtonStyle.Large
    readonly property real metric: small ? 24 : large ? 38 : 30
    readonly property color foreground: {
        switch (kind) {
        case SorvelButtonStyle.Primary:
            return Look.onAccent;
        case SorvelButtonStyle.Danger:
            return Look.ember;
        case SorvelButtonStyle.Ghost:
            return control.hovered ? Look.ink : Look.ink2;
        default:
            return Look.ink;
        }
    }

    implicitHeight: metric
    implicitWidth: Math.max(metric, implicitContentWidth + leftPadding + rightPadding)
    leftPadding: text.length === 0 ? 0 : small ? 10 : large ? 20 : 14
    rightPadding: leftPadding
    hoverEnabled: true
    // In the Tab chain on every platform (macOS leaves buttons out by default).
    focusPolicy: Qt.StrongFocus
    font.pixelSize: small ? 11 : large ? 15 : 13
    font.weight: kind === SorvelButtonStyle.Primary ? Font.DemiBold : Font.Medium
    opacity: enabled ? 1 : 0.45

    Accessible.name: text.length > 0 ? text : toolTip

    // Return and Enter press the focused button, ahead of a sheet's default
    // action, as Space does.
    Keys.onShortcutOverride: event => event.accepted = control.isActivationKey(event.key)
    Keys.onPressed: event => {
        if (control.isActivationKey(event.key) && !event.isAutoRepeat) {
            control.clicked();
            event.accepted = true;
        }
    }
    function isActivationKey(key: int): bool {
        return key === Qt.Key_Return || key === Qt.Key_Enter;
    }

    contentItem: Item {
        implicitWidth: children[0].implicitWidth
        implicitHeight: children[0].implicitHeight

        Row {
            anchors.centerIn: parent
            spacing: control.small ? 5 : 7

            SymbolIcon {
                anchors.verticalCenter: parent.verticalCenter
                visible: control.symbol.length > 0
                name: control.symbol
                color: control.foreground
                size: control.small ? 12 : control.large ? 17 : 14
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                visible: control.text.length > 0
                text: control.text
                font: control.font
                color: control.foreground
                elide: Text.ElideRight
            }
        }
    }

    background: Rectangle {
        radius: height / 2
        color: {
            switch (control.kind) {
            case SorvelButtonStyle.Danger:
                return control.hovered ? Look.withAlpha(Look.ember, 0.26) : Look.emberSubtle;
            case SorvelButtonStyle.Ghost:
                return control.hovered ? Look.surface : "transparent";
            case SorvelButtonStyle.Secondary:
                return control.hovered ? Look.raised : Look.surface;
            default:
                return "transparent";
            }
        }
        border.width: control.kind === SorvelButtonStyle.Secondary ? 1 : 0
        border.color: Look.line
        scale: control.down ? 0.97 : 1

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            visible: control.kind === SorvelButtonStyle.Primary
            gradient: SorvelFlatGradient {}

            Rectangle {
                // The hover light of the primary kind.
                anchors.fill: parent
                radius: parent.radius
                color: Look.withAlpha(Look.onAccent, control.down ? 0.16 : control.hovered ? 0.08 : 0)
            }
        }

        Behavior on scale { Movement { curve: Look.press } }
        Behavior on color { ColorMovement { curve: Look.hover } }
    }

    FocusRing {
        shown: control.activeFocus
        baseRadius: control.height / 2
    }

    SorvelToolTip {
        visible: control.hovered && control.toolTip.length > 0
        text: control.toolTip
    }
}
