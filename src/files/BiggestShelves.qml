pragma ComponentBehavior: Bound
import QtQuick
import Sorvel.Ui

// The heaviest files of the scan: search and sort, a chip per kind, "Hide apps
// & bundles", and the rows 48 at a time.
Item {
    id: page

    signal preview(var details)

    FileShelfModel {
        id: shelf

        state: AppState
        shelf: "largest"
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
        FileControls {
            id: controls

            search: shelf.search
            sort: shelf.sort
            sorts: shelf.sorts
            prompt: qsTr("Filter by name or path")
            onSearchEdited: text => shelf.search = text
            onSortChosen: raw => shelf.sort = raw
        }
        Flow {
            width: parent.width
            spacing: 6

            Repeater {
                model: shelf.chips

                Chip {
                    required property var modelData

                    text: modelData.title
                    on: modelData.on
                    tint: modelData.hue < 0 ? Look.ink2 : Qt.hsva(modelData.hue, 0.5, 0.86, 1)
                    onClicked: shelf.chooseCategory(modelData.raw)
                }
            }
            Chip {
                text: qsTr("Hide apps & bundles")
                on: shelf.hidePackages
                tint: Look.accent
                onClicked: shelf.hidePackages = !shelf.hidePackages
            }
        }
    }

    ShelfList {
        id: list

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
        symbol: "doc.on.doc"
        title: shelf.emptyTitle
        text: shelf.emptyText
    }
}
