import QtQuick
import Sorvel.Ui

// Copy the path, show it in the file manager.
Row {
    id: actions

    property string path
    property int size: SorvelButtonStyle.Small

    readonly property PathActionsModel model: PathActionsModel {}

    spacing: 4

    SorvelButton {
        kind: SorvelButtonStyle.Ghost
        size: actions.size
        symbol: "doc.on.doc"
        toolTip: qsTr("Copy path")
        onClicked: actions.model.copy(actions.path)
    }
    SorvelButton {
        kind: SorvelButtonStyle.Ghost
        size: actions.size
        symbol: "magnifyingglass"
        toolTip: qsTr("Show in Finder")
        onClicked: actions.model.reveal(actions.path)
    }
}
