import QtQuick
import QtQuick.Window
import Sorvel.Ui

// The strip above every area: the mark, the area switcher, the scan controls
// and the free-space chip; with a title bar of our own, it also moves the
// window and holds the window buttons.
Rectangle {
    id: bar

    property Window window
    property bool customTitleBar: false
    property SorvelCommands commands
    readonly property bool compact: width < 980
    readonly property alias scanMenu: menu

    implicitHeight: 56
    color: Look.canvas

    // A narrow window counts the files read in the short form.
    Binding {
        target: Shell.scan
        property: "compact"
        value: bar.compact
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Look.line
    }

    // Dragging the empty bar moves the window; a double click maximises it.
    DragHandler {
        enabled: bar.customTitleBar && bar.window !== null
        target: null
        onActiveChanged: if (active) bar.window.startSystemMove()
    }
    TapHandler {
        enabled: bar.customTitleBar && bar.window !== null
        onDoubleTapped: bar.window.visibility === Window.Maximized ? bar.window.showNormal() : bar.window.showMaximized()
    }

    Row {
        id: leading

        x: 18
        anchors.verticalCenter: parent.verticalCenter
        spacing: 18

        Wordmark {
            anchors.verticalCenter: parent.verticalCenter
            size: 15
            showName: !bar.compact
        }
        AreaSwitcher {
            anchors.verticalCenter: parent.verticalCenter
            compact: bar.compact
        }
    }

    Row {
        id: trailing

        anchors.right: parent.right
        anchors.rightMargin: bar.customTitleBar ? 10 : 18
        anchors.verticalCenter: parent.verticalCenter
        spacing: 10

        // While scanning: what is read, how many files, and Stop.
        Row {
            anchors.verticalCenter: parent.verticalCenter
            visible: Shell.scan.isScanning
            spacing: 8

            SorvelLoader {
                anchors.verticalCenter: parent.verticalCenter
                size: 14
            }
            Column {
                anchors.verticalCenter: parent.verticalCenter

                Text {
                    text: Shell.scan.readingText
                    width: Math.min(implicitWidth, bar.compact ? 140 : 260)
                    elide: Text.ElideMiddle
                    font.pixelSize: 12
                    font.weight: Font.DemiBold
                    color: Look.ink
                }
                Text {
                    text: Shell.scan.filesText
                    font: Look.caption
                    color: Look.ink3
                }
            }
            SorvelButton {
                anchors.verticalCenter: parent.verticalCenter
                kind: SorvelButtonStyle.Secondary
                symbol: "stop.fill"
                toolTip: qsTr("Stop scanning (⌘.)")
                enabled: Shell.scan.canStop
                onClicked: AppState.cancelScan()
            }
        }

        SorvelButton {
            anchors.verticalCenter: parent.verticalCenter
            visible: Shell.scan.canRescan
            kind: SorvelButtonStyle.Ghost
            symbol: "arrow.clockwise"
            text: bar.compact ? "" : Shell.scan.rescanText
            toolTip: bar.compact ? Shell.scan.rescanText : ""
            onClicked: AppState.scanText(AppState.scanTarget)
        }

        SorvelButton {
            id: scanButton

            anchors.verticalCenter: parent.verticalCenter
            visible: !Shell.scan.isScanning
            kind: SorvelButtonStyle.Primary
            symbol: "scope"
            text: qsTr("Scan")
            onClicked: menu.opened ? menu.close() : menu.open()

            ScanMenu {
                id: menu

                x: scanButton.width - width
                y: scanButton.height + 8
            }
        }

        FreeSpaceChip {
            anchors.verticalCenter: parent.verticalCenter
            compact: bar.compact
        }

        SorvelButton {
            id: menuButton

            objectName: "commandsButton"
            anchors.verticalCenter: parent.verticalCenter
            visible: bar.commands !== null
            kind: SorvelButtonStyle.Ghost
            symbol: "list.bullet"
            // No tooltip over the open menu: it would cover the first
            // entry's shortcut.
            toolTip: commandsMenu.opened ? "" : qsTr("Commands")
            Accessible.name: qsTr("Commands")
            onClicked: commandsMenu.opened ? commandsMenu.close() : commandsMenu.open()

            CommandsMenu {
                id: commandsMenu

                commands: bar.commands
                x: menuButton.width - width
                y: menuButton.height + 8
            }
        }

        WindowControls {
            anchors.verticalCenter: parent.verticalCenter
            visible: bar.customTitleBar
            window: bar.window
        }
    }
}
