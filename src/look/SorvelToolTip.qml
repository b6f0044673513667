import QtQuick
import QtQuick.Templates as T
import Sorvel.Ui

// The help text of a control: a small raised capsule after a short delay.
T.ToolTip {
    id: tip

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

    contentItem: Text {
        text: tip.text
        font: tip.font
        color: Look.ink
        wrapMode: Text.Wrap
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
