pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Sorvel.Ui

// The application's menu: the scan commands, Settings, About, Quit and the Go
// entries, each with its shortcut, as the top bar's menu button shows them.
T.Popup {
    id: menu

    required property SorvelCommands commands

    implicitWidth: 300
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    padding: 8
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent

    component Entry: Rectangle {
        id: entry

        property string text
        property string shortcut
        property bool current: false
        signal activated

        width: menu.availableWidth
        height: 28
        radius: 7
        color: entryHover.hovered && enabled ? Look.sorvelSubtle : "transparent"
        opacity: enabled ? 1 : 0.45

        Accessible.role: Accessible.MenuItem
        Accessible.name: text
        // The keyboard: Up and Down between entries, Return, Enter or Space to choose.
        activeFocusOnTab: entry.enabled
        Keys.onReturnPressed: entry.choose()
        Keys.onEnterPressed: entry.choose()
        Keys.onSpacePressed: entry.choose()
        Keys.onDownPressed: entry.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
        Keys.onUpPressed: entry.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
        Accessible.focusable: true

        FocusRing {
            shown: entry.activeFocus
            baseRadius: entry.radius
            offset: -1
        }

        function choose() {
            menu.close();
            entry.activated();
        }

        Text {
            x: 10
            anchors.verticalCenter: parent.verticalCenter
            text: entry.text
            font.pixelSize: 13
            font.weight: entry.current ? Font.DemiBold : Font.Normal
            color: Look.ink
        }
        Text {
            anchors.right: parent.right
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            text: entry.shortcut
            font: Look.caption
            color: Look.ink3
        }
        HoverHandler {
            id: entryHover
        }
        TapHandler {
            enabled: entry.enabled
            onTapped: entry.choose()
        }
    }

    // The first entry takes the focus, so the arrows work at once.
    onOpened: menu.contentItem.nextItemInFocusChain(true)?.forceActiveFocus(Qt.OtherFocusReason)

    component Divider: Rectangle {
        width: menu.availableWidth
        height: 9
        color: "transparent"

        Rectangle {
            anchors.centerIn: parent
            width: parent.width - 16
            height: 1
            color: Look.line
        }
    }

    background: Rectangle {
        radius: 14
        color: Look.panel
        border.width: 1
        border.color: Look.lineStrong
    }

    contentItem: Column {
        Repeater {
            model: menu.commands.scanCommands

            delegate: Entry {
                required property var modelData

                text: modelData.text
                shortcut: modelData.shortcut
                enabled: modelData.enabled
                onActivated: modelData.action()
            }
        }
        // There while the last removal still lies in the Trash.
        Divider {
            visible: Shell.canUndo
        }
        Entry {
            objectName: "undoEntry"
            visible: Shell.canUndo
            text: qsTr("Undo Last Removal")
            shortcut: "Ctrl+Z"
            onActivated: Shell.undoLastRemoval()
        }
        Divider {}
        Entry {
            text: qsTr("Settings…")
            shortcut: menu.commands.settingsShortcut
            onActivated: menu.commands.openSettings()
        }
        Entry {
            text: qsTr("About Sorvel Cleaner")
            onActivated: menu.commands.openAbout()
        }
        Entry {
            text: qsTr("Quit Sorvel Cleaner")
            shortcut: "Ctrl+Q"
            onActivated: Qt.quit()
        }
        Divider {}
        Repeater {
            model: Shell.goEntries

            delegate: Entry {
                required property var modelData

                text: modelData.title
                current: modelData.raw === AppState.section
                onActivated: AppState.section = modelData.raw
            }
        }
        Divider {}
        Repeater {
            model: Shell.areas

            delegate: Entry {
                required property var modelData

                text: modelData.title
                shortcut: "Ctrl+" + modelData.shortcut
                onActivated: Shell.goToArea(modelData.raw)
            }
        }
    }
}
