pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Sorvel.Ui

// The scan menu under the top bar's "Scan" button: where to scan, the recent
// targets and the mounted volumes. A click scans and closes the menu.
T.Popup {
    id: menu

    implicitWidth: 280
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    padding: 8
    modal: false
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent

    component Heading: Text {
        leftPadding: 10
        topPadding: 6
        bottomPadding: 4
        font: Look.micro
        color: Look.ink3
    }

    component MenuRow: Rectangle {
        id: row

        property string symbol
        property string text
        property string help
        signal activated

        width: menu.availableWidth
        height: 30
        radius: 8
        color: rowHover.hovered ? Look.sorvelSubtle : "transparent"

        Accessible.role: Accessible.MenuItem
        Accessible.name: text
        // The keyboard: Up and Down between entries, Return, Enter or Space to choose.
        activeFocusOnTab: row.enabled
        Keys.onReturnPressed: row.choose()
        Keys.onEnterPressed: row.choose()
        Keys.onSpacePressed: row.choose()
        Keys.onDownPressed: row.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
        Keys.onUpPressed: row.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
        Accessible.focusable: true

        FocusRing {
            shown: row.activeFocus
            baseRadius: row.radius
            offset: -1
        }

        function choose() {
            menu.close();
            row.activated();
        }

        Row {
            x: 10
            anchors.verticalCenter: parent.verticalCenter
            spacing: 9

            SymbolIcon {
                anchors.verticalCenter: parent.verticalCenter
                name: row.symbol
                size: 15
                color: rowHover.hovered ? Look.accent : Look.ink2
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                width: row.width - 44
                text: row.text
                font.pixelSize: 13
                color: Look.ink
                elide: Text.ElideMiddle
            }
        }
        HoverHandler {
            id: rowHover
        }
        TapHandler {
            onTapped: row.choose()
        }
        SorvelToolTip {
            visible: rowHover.hovered && row.help.length > 0
            text: row.help
        }
    }

    background: Rectangle {
        radius: 14
        color: Look.panel
        border.width: 1
        border.color: Look.lineStrong
    }

    // The first entry takes the focus, so the arrows work at once.
    onOpened: menu.contentItem.nextItemInFocusChain(true)?.forceActiveFocus(Qt.OtherFocusReason)

    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Look.reducedMotion ? 0 : Look.hover[0] }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Look.reducedMotion ? 0 : Look.press[0] }
    }

    contentItem: Column {
        spacing: 1

        Heading { text: qsTr("SCAN") }
        MenuRow {
            symbol: "house.fill"
            text: qsTr("Home Folder")
            onActivated: AppState.scanText(Shell.homePath)
        }
        MenuRow {
            symbol: "internaldrive"
            text: qsTr("Entire Disk")
            onActivated: AppState.scanText("/")
        }
        MenuRow {
            symbol: "app.window"
            text: qsTr("Applications")
            help: Shell.applicationsPath
            onActivated: AppState.scanText(Shell.applicationsPath)
        }
        MenuRow {
            symbol: "folder.badge.plus"
            text: qsTr("Choose Folder…")
            onActivated: AppState.chooseFolderAndScan()
        }
        MenuRow {
            symbol: "doc"
            text: qsTr("Open Saved Scan…")
            help: qsTr("A scan saved by sorvel scan --export-ncdu or ncdu -o")
            onActivated: AppState.chooseSavedScan()
        }

        Heading {
            visible: Shell.recentRows.length > 0
            text: qsTr("RECENT")
        }
        Repeater {
            model: Shell.recentRows

            delegate: MenuRow {
                required property var modelData

                symbol: "clock"
                text: modelData.name
                help: modelData.path
                onActivated: AppState.scanText(modelData.path)
            }
        }

        Heading {
            visible: Shell.volumeRows.length > 0
            text: qsTr("VOLUMES")
        }
        Repeater {
            model: Shell.volumeRows

            delegate: MenuRow {
                required property var modelData

                symbol: modelData.isInternal ? "internaldrive" : "externaldrive"
                text: modelData.name
                help: modelData.path
                onActivated: AppState.scanText(modelData.path)
            }
        }
    }
}
