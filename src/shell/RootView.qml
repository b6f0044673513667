import QtQuick
import QtQuick.Window
import Sorvel.Ui

// The content of the main window, back to front: the top bar over the view of
// the current section, the selection bar, the toast, the sheets, and the hint
// shown while a folder is dragged over the window.
Item {
    id: root

    property Window window
    property bool customTitleBar: false
    readonly property alias topBar: topBar
    property bool dropTargeted: false

    SorvelCommands {
        id: commands
    }

    TopBar {
        id: topBar

        width: parent.width
        commands: commands
        window: root.window
        customTitleBar: root.customTitleBar
    }

    Item {
        id: detail

        anchors.top: topBar.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        clip: true

        AreaHeader {
            id: header

            x: 32
            y: 22
            width: parent.width - 64
        }

        SavedScanBanner {
            id: savedScan

            anchors.top: header.bottom
            anchors.topMargin: shown ? 12 : 0
            x: 32
            width: parent.width - 64
        }

        Loader {
            id: sectionView

            anchors.top: savedScan.bottom
            anchors.topMargin: 12
            anchors.bottom: parent.bottom
            width: parent.width
            sourceComponent: {
                switch (AppState.section) {
                case "largest":
                case "old":
                case "duplicates":
                    return filesView;
                case "cleanup":
                    return steamView;
                default:
                    return spaceView;
                }
            }
            // A change of section fades the new view in.
            onLoaded: {
                fadeIn.restart();
            }

            NumberAnimation {
                id: fadeIn

                target: sectionView.item
                property: "opacity"
                from: 0
                to: 1
                duration: Look.reducedMotion ? 0 : 300
                easing.type: Easing.BezierSpline
                easing.bezierCurve: [0.23, 1, 0.32, 1, 1, 1]
            }
        }
    }

    Component {
        id: spaceView

        SpaceView {}
    }
    Component {
        id: filesView

        RequiresScan {
            item: AppState.section
            itemTitle: Shell.titleOf(AppState.section)
            itemCaption: Shell.captionOf(AppState.section)

            FilesView {
                anchors.fill: parent
            }
        }
    }
    Component {
        id: steamView

        SteamView {}
    }

    // The selection bar's place along the bottom edge: while anything is
    // selected the bar springs up into it from below the edge, and it sinks
    // away again when the selection empties (at once under reduced motion).
    Item {
        id: selectionBarSlot

        objectName: "selectionBarSlot"
        readonly property bool shown: Shell.hasSelection
        // 0: in place; 1: below the window's edge.
        readonly property real away: slide.value

        anchors.bottom: parent.bottom
        width: parent.width
        height: 72
        visible: shown || away < 1
        SpringValue {
            id: slide
            target: selectionBarSlot.shown ? 0 : 1
        }

        SelectionBar {
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 12 - selectionBarSlot.away * 84
            width: Math.min(720, parent.width - 48)
        }
    }

    ToastOverlay {
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 96
        width: parent.width
    }

    ModalHost {
        anchors.fill: parent
    }

    DropArea {
        anchors.fill: parent
        keys: ["text/uri-list"]
        onEntered: drag => {
            root.dropTargeted = true;
            drag.accept(Qt.CopyAction);
        }
        onExited: root.dropTargeted = false
        onDropped: drop => {
            root.dropTargeted = false;
            if (Shell.dropUrls(drop.urls))
                drop.accept(Qt.CopyAction);
        }
    }

    DropHint {
        anchors.fill: parent
        shown: root.dropTargeted
    }
}
