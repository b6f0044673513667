pragma ComponentBehavior: Bound
import QtQuick
import Sorvel.Ui

// The application's commands and their keyboard shortcuts: the scan commands,
// the Go entries for every item of every area, and one shortcut per area.
// The menu of the top bar lists the same entries (commands).
Item {
    id: commands

    // The settings shortcut: the platform's own where it has one, else Ctrl+,.
    readonly property string settingsShortcut: preferencesKey.portableText.length > 0 ? preferencesKey.portableText : "Ctrl+,"

    // Opens the settings window, or raises the open one.
    function openSettings() {
        settingsWindow.present();
    }

    // Opens the About window, or raises the open one.
    function openAbout() {
        aboutWindow.present();
    }

    // {text, shortcut, enabled, action} in menu order; "" text is a divider.
    readonly property var scanCommands: [
        { text: qsTr("Scan Folder…"), shortcut: "Ctrl+O", enabled: true, action: () => AppState.chooseFolderAndScan() },
        { text: qsTr("Scan Home Folder"), shortcut: "Ctrl+Shift+H", enabled: true, action: () => AppState.scanText(Shell.homePath) },
        { text: qsTr("Scan Entire Disk"), shortcut: "Ctrl+Shift+D", enabled: true, action: () => AppState.scanText("/") },
        { text: qsTr("Rescan"), shortcut: "Ctrl+R", enabled: Shell.scan.canRescan, action: () => AppState.scanText(AppState.scanTarget) },
        { text: qsTr("Stop Scan"), shortcut: "Ctrl+.", enabled: Shell.scan.canStop, action: () => AppState.cancelScan() }
    ]

    Repeater {
        model: commands.scanCommands

        delegate: Item {
            id: scanCommand

            required property var modelData

            Shortcut {
                sequence: scanCommand.modelData.shortcut
                enabled: scanCommand.modelData.enabled
                onActivated: scanCommand.modelData.action()
            }
        }
    }

    Repeater {
        model: Shell.areas

        delegate: Item {
            id: areaCommand

            required property var modelData

            Shortcut {
                sequence: "Ctrl+" + areaCommand.modelData.shortcut
                onActivated: Shell.goToArea(areaCommand.modelData.raw)
            }
        }
    }

    Shortcut {
        id: preferencesKey

        // The linter of Qt 6.4 finds no enumeration on the StandardKey value type.
        sequence: StandardKey.Preferences // qmllint disable unqualified
        onActivated: commands.openSettings()
    }
    Shortcut {
        enabled: preferencesKey.portableText.length === 0
        sequence: "Ctrl+,"
        onActivated: commands.openSettings()
    }
    // Puts the last removal back from the Trash. A text field's own undo
    // comes first: it takes the key while it has the focus.
    Shortcut {
        sequence: "Ctrl+Z"
        enabled: Shell.canUndo
        onActivated: Shell.undoLastRemoval()
    }
    // Quits even while the tray keeps the application without a window.
    Shortcut {
        sequence: "Ctrl+Q"
        onActivated: Qt.quit()
    }
    SettingsView {
        id: settingsWindow

        visible: false
    }
    AboutWindow {
        id: aboutWindow

        visible: false
    }
}
