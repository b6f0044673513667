import QtQuick
import Sorvel.Ui

// A question before an action; the action's button is the default.
SheetCard {
    id: sheet

    readonly property ConfirmModel model: ConfirmModel {}

    symbol: model.destructive ? "exclamationmark.triangle.fill" : "info.circle.fill"
    symbolColor: model.destructive ? Look.ember : Look.accent
    title: model.title

    Text {
        width: parent.width
        wrapMode: Text.Wrap
        text: sheet.model.message
        font.pixelSize: 13
        color: Look.ink2
    }

    buttons: [
        SorvelButton {
            text: qsTr("Cancel")
            onClicked: sheet.model.cancel()
        },
        SorvelButton {
            kind: sheet.model.destructive ? SorvelButtonStyle.Danger : SorvelButtonStyle.Primary
            text: sheet.model.actionTitle
            onClicked: sheet.model.perform()
        }
    ]

    Shortcut {
        sequences: ["Return", "Enter"]
        onActivated: sheet.model.perform()
    }
}
