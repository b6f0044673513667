pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Sorvel.Ui

// The help text of a control: a small raised capsule after a short delay.
// `symbols` may name, per line of the text, a symbol drawn before that line
// ("" for none).
T.ToolTip {
    id: tip

    property var symbols: []
    readonly property var lines: text.split("\n")

    x: parent ? Math.round((parent.width - implicitWidth) / 2) : 0
    y: parent ? parent.height + 6 : 0
    delay: 600
    timeout: -1
    margins: 6
    padding: 6
    leftPadding: 10
    rightPadding: 10
    font.pixelSize: 12
    implicitWidth: Math.min(360, contentItem.implicitWidth + leftPadding + rightPadding)
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent | T.Popup.CloseOnReleaseOutsideParent

    // The linter of Qt 6.4 counts the id inside the delegate against deferring
    // the content item; deferring it makes no difference to a tooltip.
    contentItem: Column { // qmllint disable deferred-property-id
        spacing: 1
        Repeater {
            model: tip.lines
            delegate: Row {
                id: line

                required property string modelData
                required property int index
                readonly property string symbol: tip.symbols[index] ?? ""

                spacing: 5
                SymbolIcon {
                    visible: line.symbol.length > 0
                    name: line.symbol.length > 0 ? line.symbol : "checkmark"
                    size: 12
                    y: 2
                    color: line.symbol === "exclamationmark.triangle.fill" ? Look.magma : Look.ink2
                }
                Text {
                    width: Math.min(implicitWidth, 340 - (line.symbol.length > 0 ? 17 : 0))
                    text: line.modelData
                    font: tip.font
                    color: Look.ink
                    wrapMode: Text.Wrap
                }
            }
        }
    }

    background: Rectangle {
        radius: 8
        color: Look.panel
        border.width: 1
        border.color: Look.lineStrong
    }

    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Look.reducedMotion ? 0 : 120 }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Look.reducedMotion ? 0 : 100 }
    }
}
