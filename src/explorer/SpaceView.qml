import QtQml
import QtQuick
import QtQuick.Templates as T
import Sorvel.Ui

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
        reducedMotion: Look.reducedMotion
        onPreviewRequested: details => previewWindow.show(details)
        onRemovalStarted: view.steamClean()
    }

    // Sends the steamer over the tiles a removal takes, given where the rows
    // of the current layout lie.
    function steamClean() {
        const flick = view.listLayout ? list : grid;
        model.steamClean(view.listLayout ? list.width : grid.cellWidth, view.listLayout ? 48 + list.spacing : grid.cellHeight,
                         view.listLayout ? 1 : grid.columns, flick.contentY - flick.originY, flick.width, flick.height);
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

        // The components below use the ids of this file, as Qt 6.4 allows; its linter
        // accepts that only under "pragma ComponentBehavior: Bound", with which 6.4
        // refuses the components a Loader or a view creates.
        // qmllint disable unqualified
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
        // qmllint enable unqualified
        FolderHeader {
            width: parent.width
            visible: view.results
            space: model
            onMovedByKeys: {
                stage.forceActiveFocus(Qt.OtherFocusReason);
                view.focusTile();
            }
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
    // The components below use the ids of this file, as Qt 6.4 allows; its linter
    // accepts that only under "pragma ComponentBehavior: Bound", with which 6.4
    // refuses the components a Loader or a view creates.
    // qmllint disable unqualified
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

                activeFocusOnTab: visible && !model.smallLoading
                Keys.onSpacePressed: model.loadSmallFiles()
                Keys.onReturnPressed: model.loadSmallFiles()
                Keys.onEnterPressed: model.loadSmallFiles()
                Accessible.role: Accessible.Button
                Accessible.name: model.smallRowText
                Accessible.focusable: true

                FocusRing {
                    shown: smallRow.activeFocus
                    baseRadius: smallRow.radius
                }

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
                        name: model.smallRowLoadable ? "arrow.down.circle" : "doc.on.doc"
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
                    enabled: model.smallRowLoadable
                }
                TapHandler {
                    enabled: model.smallRowLoadable
                    onTapped: model.loadSmallFiles()
                }
            }
        }
    }
    // qmllint enable unqualified

    // Loads the small files once half of their row is in view.
    function checkSmallRow(flick: ItemView) {
        if (!model.smallRowVisible || !model.smallRowLoadable || model.smallLoading || !flick.footerItem)
            return;
        const footerTop = flick.footerItem.y + 10;
        if (flick.contentY + flick.height >= footerTop + 22)
            model.loadSmallFiles();
    }

    // The focus follows the model's focused tile: after a move by the keys, a
    // rebuild of the rows, opening a folder (its first tile) or going back (the
    // tile of the folder we came from). Only while the tiles have the focus.
    function focusTile() {
        const flick = view.listLayout ? list : grid;
        const row = model.focusRow;
        if (row < 0 || row >= flick.count)
            return;
        flick.currentIndex = row;
        flick.positionViewAtIndex(row, GridView.Contain);
        if (flick.currentItem)
            flick.currentItem.forceActiveFocus(Qt.OtherFocusReason);
    }
    Connections {
        target: model
        function onFocusRowChanged() {
            if (stage.activeFocus)
                view.focusTile();
        }
    }

    FocusScope {
        id: stage

        anchors.top: top.bottom
        anchors.topMargin: 14
        anchors.bottom: parent.bottom
        width: parent.width
        focus: true

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
            keyNavigationEnabled: false
            footer: footer
            T.ScrollBar.vertical: SorvelScrollBar {}
            onContentYChanged: view.checkSmallRow(grid)
            // Qt.callLater is a method; the linter of Qt 6.4 takes it for a property.
            onCountChanged: Qt.callLater(view.checkSmallRow, grid) // qmllint disable type

            // The delegate uses the ids of this file (see the footer above).
            // qmllint disable unqualified
            delegate: EntryTile {
                width: grid.cellWidth - 8
                space: model
                listLayout: false
                columns: grid.columns
                onIndexChanged: if (index === grid.count - 1) model.loadMore()
                Component.onCompleted: if (index === grid.count - 1) model.loadMore()
            }
            // qmllint enable unqualified

            add: Transition {
                enabled: !Look.reducedMotion
                NumberAnimation { property: "scale"; from: 0.6; to: 1; duration: 260; easing.type: Easing.OutCubic }
                NumberAnimation { property: "opacity"; from: 0; to: 1; duration: 200 }
            }
            // The closing step of a removal: what it took leaves, the rest
            // closes up.
            remove: Transition {
                enabled: !Look.reducedMotion
                Movement { property: "opacity"; to: 0; curve: Look.closing }
            }
            displaced: Transition {
                enabled: !Look.reducedMotion
                Movement { properties: "x,y"; curve: Look.closing }
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
            keyNavigationEnabled: false
            footer: footer
            T.ScrollBar.vertical: SorvelScrollBar {}
            onContentYChanged: view.checkSmallRow(list)
            // Qt.callLater is a method; the linter of Qt 6.4 takes it for a property.
            onCountChanged: Qt.callLater(view.checkSmallRow, list) // qmllint disable type

            // The delegate uses the ids of this file (see the footer above).
            // qmllint disable unqualified
            delegate: EntryTile {
                width: list.width
                space: model
                listLayout: true
                onIndexChanged: if (index === list.count - 1) model.loadMore()
                Component.onCompleted: if (index === list.count - 1) model.loadMore()
            }
            // qmllint enable unqualified
            add: Transition {
                enabled: !Look.reducedMotion
                NumberAnimation { property: "opacity"; from: 0; to: 1; duration: 200 }
            }
            remove: Transition {
                enabled: !Look.reducedMotion
                Movement { property: "opacity"; to: 0; curve: Look.closing }
            }
            displaced: Transition {
                enabled: !Look.reducedMotion
                Movement { properties: "x,y"; curve: Look.closing }
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

        // The steamer stands over the grid, at home in its lower right corner
        // until a removal sends it from tile to tile.
        Item {
            id: steamLayer
            objectName: "steamLayer"

            readonly property SteamClean run: model.steamer
            readonly property var hop: Look.standard(420)
            readonly property var home: Look.standard(780)
            readonly property var glide: Look.standard(500)

            anchors.fill: grid
            onWidthChanged: model.parkSteamer(width, height)
            onHeightChanged: model.parkSteamer(width, height)
            Component.onCompleted: model.parkSteamer(width, height)

            SteamJet {
                anchors.fill: parent
                from: Qt.point(steamer.centerX + steamer.nozzle.x, steamer.centerY + steamer.nozzle.y)
                to: steamLayer.run.jetTarget
                active: steamLayer.run.jetting
            }
            FlatSteamer {
                id: steamer

                property real centerX: steamLayer.run.position.x
                property real centerY: steamLayer.run.position.y
                readonly property var curve: steamLayer.run.motion === "hop" ? steamLayer.hop
                                           : steamLayer.run.motion === "park" ? steamLayer.home : steamLayer.glide

                x: centerX - width / 2
                y: centerY - height / 2
                waterLevel: model.waterLevel
                jetting: steamLayer.run.jetting

                Behavior on centerX { Movement { curve: steamer.curve } }
                Behavior on centerY { Movement { curve: steamer.curve } }
            }
        }

        EmptyState {
            visible: model.emptyVisible
            anchors.horizontalCenter: parent.horizontalCenter
            y: 20
            width: parent.width
            height: 260
            symbol: model.emptySymbol
            title: model.emptyTitle
            text: model.emptyText
            SorvelButton {
                visible: model.emptyCanReset
                text: qsTr("Show Everything")
                onClicked: model.showEverything()
            }
        }
    }

    PreviewWindow {
        id: previewWindow
    }
}
