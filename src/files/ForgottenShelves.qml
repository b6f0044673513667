pragma ComponentBehavior: Bound
import QtQuick
import Sorvel.Ui

// Big files nobody has opened or changed for months: search and sort, the
// choice of how long, and the rows 48 at a time.
Item {
    id: page

    signal preview(var details)

    FileShelfModel {
        id: shelf

        state: AppState
        shelf: "old"
    }

    Column {
        id: top

        x: 32
        width: parent.width - 64
        spacing: 12

        Text {
            text: shelf.subtitle
            font.pixelSize: 12
            color: Look.ink3
        }
        Row {
            spacing: 18

            FileControls {
                search: shelf.search
                sort: shelf.sort
                sorts: shelf.sorts
                prompt: qsTr("Filter by name or path")
                onSearchEdited: text => shelf.search = text
                onSortChosen: raw => shelf.sort = raw
            }
            Row {
                anchors.verticalCenter: parent.verticalCenter
                spacing: 8

                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: qsTr("Untouched for")
                    font.pixelSize: 12
                    color: Look.ink3
                }
                PillPicker {
                    readonly property var choices: shelf.monthChoices

                    anchors.verticalCenter: parent.verticalCenter
                    Accessible.name: qsTr("Untouched for")
                    options: choices.map(c => c.label)
                    currentIndex: choices.findIndex(c => c.months === shelf.months)
                    onActivated: index => shelf.months = choices[index].months
                }
            }
        }
    }

    ShelfList {
        anchors.top: top.bottom
        anchors.topMargin: 6
        anchors.bottom: parent.bottom
        x: 24
        width: parent.width - 48
        visible: !shelf.isEmpty
        shelf: shelf
        onPreview: details => page.preview(details)
    }

    EmptyState {
        anchors.top: top.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        visible: shelf.isEmpty
        symbol: "clock"
        title: shelf.emptyTitle
        text: shelf.emptyText
    }
}
