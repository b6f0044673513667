import QtQuick
import Sorvel.Ui

// A plain notice of something that went wrong, with its message and "OK".
SheetCard {
    id: sheet

    signal done

    symbol: "exclamationmark.triangle.fill"
    symbolColor: Look.honeyInk
    title: qsTr("Some grime wouldn't budge")

    Text {
        width: parent.width
        text: AppState.errorMessage
        wrapMode: Text.Wrap
        font.pixelSize: 13
        color: Look.ink2
    }

    buttons: [
        SorvelButton {
            kind: SorvelButtonStyle.Primary
            text: qsTr("OK")
            onClicked: sheet.done()
        }
    ]
}
