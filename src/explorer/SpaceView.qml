import QtQml
import QtQuick
import QtQuick.Templates as T
import Sorvel.Ui

// The linter of Qt 6.4 knows neither the model's base class, MouseArea's properties,
// Qt's cursor and button enumerations nor grouped easing; this file is checked
// by running it instead.
// qmllint disable

// The Space area: a folder of the scan as tiles. The model decides what shows
// and what every click, key and hover does; this view draws it, builds only the
// tiles near the viewport, and asks for more as the end comes into view.
FocusScope {
    id: view

    readonly property SpaceModel space: model
    readonly property bool results: model.mode === "results"
    readonly property bool listLayout: model.layout === "list"

    SpaceModel {
        id: model
        state: AppState
        onPreviewRequested: details => previewWindow.show(details)
    }

    Shortcut {
        sequences: ["Alt+Up", "Ctrl+Up"]
        enabled: model.canGoBack
        onActivated: model.goBack(1, false)
    }

    Column {
        id: top

        x: 32
        width: parent.width - 64
        spacing: 14

        Loader {
            width: parent.width
            active: model.mode === "welcome"
            visible: active
            sourceComponent: WelcomeHeader {
                space: model
            }
        }
        Loader {
            width: parent.width
            active: model.mode === "discovering"
            visible: active
            sourceComponent: DiscoveringHeader {
                space: model
            }
        }
        FolderHeader {
            width: parent.width
            visible: view.results
            space: model
        }
        CompositionStrip {
            width: parent.width
            visible: view.results
            space: model
        }
        SpaceToolbar {
            width: parent.width
            visible: view.results
            space: model
        }
    }

    // The footer of either layout: the paging line and the loose small files.
    Component {
        id: footer

        Column {
            id: foot

            width: (GridView.view ?? ListView.view)?.width ?? 0
            topPadding: 10
            bottomPadding: 124.8
            spacing: 8

            Text {
                visible: model.showingText.length > 0
                anchors.horizontalCenter: parent.horizontalCenter
                text: model.showingText
                font.pixelSize: 12
                color: Look.ink3
            }
            Rectangle {
                id: smallRow

                visible: model.smallRowVisible
                width: parent.width - 16
                anchors.horizontalCenter: parent.horizontalCenter
                height: 44
                radius: 14
                color: smallHover.hovered ? Look.glass : "transparent"
                border.width: 1
                border.color: Look.line

                Row {
                    anchors.centerIn: parent
                    spacing: 8
                    SorvelLoader {
                        visible: model.smallLoading
                        size: 12
                        anchors.verticalCenter: parent.verticalCenter
                    }
                    SymbolIcon {
                        visible: !model.smallLoading
                        name: "arrow.down.circle"
                        size: 14
                        color: Look.ink2
                        anchors.verticalCenter: parent.verticalCenter
                    }
                    Text {
                        text: model.smallRowText
                        font.pixelSize: 12
                        color: Look.ink2
                    }
                }
                HoverHandler {
                    id: smallHover
                }
                TapHandler {
                    onTapped: model.loadSmallFiles()
                }
            }
        }
    }

    // Loads the small files once half of their row is in view.
    function checkSmallRow(flick: Flickable) {
        if (!model.smallRowVisible || model.smallLoading || !flick.footerItem)
            return;
        const footerTop = flick.footerItem.y + 10;
        if (flick.contentY + flick.height >= footerTop + 22)
            model.loadSmallFiles();
    }

    Item {
        id: stage

        anchors.top: top.bottom
        anchors.topMargin: 14
        anchors.bottom: parent.bottom
        width: parent.width
        focus: true
        activeFocusOnTab: true

        Keys.onSpacePressed: event => {
            event.accepted = model.spaceKey();
        }
        onActiveFocusChanged: model.gridFocused = activeFocus

        GridView {
            id: grid

            readonly property int columns: Math.max(1, Math.floor((width + 8) / (112 + 8)))

            anchors.fill: parent
            anchors.leftMargin: 28
            anchors.rightMargin: 28
            visible: !view.listLayout && !model.emptyVisible
            model: view.listLayout ? null : model
            cellWidth: width / columns
            cellHeight: 132 + 8
            clip: true
            reuseItems: false
            cacheBuffer: 280
            boundsBehavior: Flickable.StopAtBounds
            footer: footer
            T.ScrollBar.vertical: SorvelScrollBar {}
            onContentYChanged: view.checkSmallRow(grid)
            onCountChanged: Qt.callLater(view.checkSmallRow, grid)

            delegate: EntryTile {
                space: model
                listLayout: false
                onIndexChanged: if (index === grid.count - 1) model.loadMore()
                Component.onCompleted: if (index === grid.count - 1) model.loadMore()
            }

            add: Transition {
                enabled: !Look.reducedMotion
                NumberAnimation { property: "scale"; from: 0.6; to: 1; duration: 260; easing.type: Easing.OutCubic }
                NumberAnimation { property: "opacity"; from: 0; to: 1; duration: 200 }
            }
        }

        ListView {
            id: list

            anchors.fill: parent
            anchors.leftMargin: 28
            anchors.rightMargin: 28
            visible: view.listLayout && !model.emptyVisible
            model: view.listLayout ? model : null
            spacing: 2
            clip: true
            reuseItems: false
            cacheBuffer: 200
            boundsBehavior: Flickable.StopAtBounds
            footer: footer
            T.ScrollBar.vertical: SorvelScrollBar {}
            onContentYChanged: view.checkSmallRow(list)
            onCountChanged: Qt.callLater(view.checkSmallRow, list)

            delegate: EntryTile {
                space: model
                listLayout: true
                onIndexChanged: if (index === list.count - 1) model.loadMore()
                Component.onCompleted: if (index === list.count - 1) model.loadMore()
            }
            add: Transition {
                enabled: !Look.reducedMotion
                NumberAnimation { property: "opacity"; from: 0; to: 1; duration: 200 }
            }
        }

        Connections {
            target: model
            // A new folder starts at the top.
            function onFolderChanged() {
                grid.positionViewAtBeginning();
                list.positionViewAtBeginning();
            }
            function onFilterChanged() {
                grid.positionViewAtBeginning();
                list.positionViewAtBeginning();
            }
        }

        EmptyState {
            visible: model.emptyVisible
            anchors.horizontalCenter: parent.horizontalCenter
            y: 20
            width: parent.width
            height: 260
            symbol: "magnifyingglass"
            title: qsTr("Nothing matches")
            text: model.emptyText
            SorvelButton {
                text: qsTr("Show Everything")
                onClicked: model.showEverything()
            }
        }
    }

    PreviewWindow {
        id: previewWindow
    }
}
