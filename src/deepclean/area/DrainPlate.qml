import QtQuick
import Sorvel.Ui

// One job of the Drains section: a symbol, a title, what stands on the plate,
// and a button that asks before anything happens.
MCard {
    id: plate

    property string symbol
    property string title
    property string value
    property string action
    // The button's name for screen readers, when its words are short.
    property string actionName: action

    signal perform
    // The button took the keyboard focus.
    signal focused(Item button)

    padding: 14

    Row {
        width: parent.width
        spacing: 12

        SymbolIcon {
            anchors.verticalCenter: parent.verticalCenter
            name: plate.symbol
            size: 22
            color: Look.ink2
        }
        Column {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - 34 - button.width - 12
            spacing: 2

            Text {
                width: parent.width
                text: plate.title
                elide: Text.ElideRight
                font.pixelSize: 13
                font.weight: Font.DemiBold
                color: Look.ink
            }
            Text {
                visible: text.length > 0
                width: parent.width
                text: plate.value
                elide: Text.ElideRight
                font.pixelSize: 12
                color: Look.ink3
            }
        }
        SorvelButton {
            id: button

            anchors.verticalCenter: parent.verticalCenter
            size: SorvelButtonStyle.Small
            text: plate.action
            Accessible.name: plate.actionName
            focusPolicy: Qt.StrongFocus
            onClicked: plate.perform()
            onActiveFocusChanged: if (activeFocus) plate.focused(button)
        }
    }
}
