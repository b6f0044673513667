pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Sorvel.Ui

// The search field and the "Sort" menu of a shelf. The owner keeps the values:
// edits come out as searchEdited and sortChosen.
Row {
    id: controls

    property string search
    property string sort
    // [{raw, title}]
    property var sorts: []
    property string prompt
    property alias searchField: field

    signal searchEdited(string text)
    signal sortChosen(string raw)

    spacing: 10

    SearchField {
        id: field

        width: 260
        placeholderText: controls.prompt
        text: controls.search
        Accessible.name: controls.prompt
        onTextChanged: if (text !== controls.search) controls.searchEdited(text)
    }
    SorvelButton {
        id: sortButton

        anchors.verticalCenter: parent.verticalCenter
        size: SorvelButtonStyle.Small
        symbol: "arrow.up.arrow.down"
        text: qsTr("Sort")
        toolTip: qsTr("Sort by")
        focusPolicy: Qt.StrongFocus
        Accessible.name: qsTr("Sort by")
        onClicked: sortMenu.popup(sortButton, 0, sortButton.height + 4)

        Menu {
            id: sortMenu

            Repeater {
                model: controls.sorts

                MenuItem {
                    required property var modelData

                    text: modelData.title
                    checkable: true
                    checked: modelData.raw === controls.sort
                    onTriggered: controls.sortChosen(modelData.raw)
                }
            }
        }
    }
}
