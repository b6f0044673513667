pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Window
import Sorvel.Ui

// The settings window: four groups in one scrolling column, each row a title,
// a detail line and its control. Every control writes its preference at once;
// scan settings count from the next scan.
Window {
    id: settingsWindow

    // Shows the window, or brings the open one to the front.
    function present() {
        visible = true;
        raise();
        requestActivate();
    }

    width: 600
    height: 720
    minimumWidth: 480
    minimumHeight: 420
    title: qsTr("Settings")
    color: Look.canvas

    // The keyboard focus moving to a control scrolls it into view.
    onActiveFocusItemChanged: if (activeFocusItem) scroll.reveal(activeFocusItem)

    SettingsModel {
        id: settings
    }

    Shortcut {
        // The linter of Qt 6.4 finds no enumeration on the StandardKey value type.
        sequences: [StandardKey.Cancel, StandardKey.Close] // qmllint disable unqualified
        onActivated: settingsWindow.close()
    }

    // A group: a heading over a card of rows.
    component Group: Column {
        id: group

        property string title
        property string symbol
        default property alias rows: rowColumn.data

        width: parent ? parent.width : 0
        spacing: 8

        Row {
            x: 4
            spacing: 6

            SymbolIcon {
                anchors.verticalCenter: parent.verticalCenter
                visible: group.symbol.length > 0
                name: group.symbol
                size: 14
                color: Look.ink2
            }
            Text {
                text: group.title
                font.pixelSize: 12
                font.weight: Font.DemiBold
                color: Look.ink2
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
        }
        MCard {
            width: group.width
            padding: 0

            Column {
                id: rowColumn

                width: parent.width
            }
        }
    }

    // A row of a group: title and detail to the left, its control to the right;
    // a hairline above every row but the first.
    component SettingRow: Item {
        id: row

        property string title
        property string detail
        default property alias control: slot.data

        width: parent ? parent.width : 0
        implicitHeight: Math.max(texts.implicitHeight, slot.height) + 24

        Rectangle {
            x: 16
            width: row.width - 32
            height: 1
            visible: row.y > 0
            color: Look.line
        }
        Column {
            id: texts

            x: 16
            anchors.verticalCenter: parent.verticalCenter
            width: row.width - 32 - (slot.width > 0 ? slot.width + 16 : 0)
            spacing: 3

            Text {
                width: parent.width
                text: row.title
                wrapMode: Text.Wrap
                font.pixelSize: 13
                font.weight: Font.DemiBold
                color: Look.ink
            }
            Text {
                width: parent.width
                visible: text.length > 0
                text: row.detail
                wrapMode: Text.Wrap
                font.pixelSize: 12
                color: Look.ink3
            }
        }
        Item {
            id: slot

            anchors.right: parent.right
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            width: childrenRect.width
            height: childrenRect.height
        }
    }

    // A switch without a label of its own: its row's title names it for
    // screen readers, and it is as wide as its track.
    component RowSwitch: SorvelSwitch {
        implicitWidth: indicator.width
        focusPolicy: Qt.StrongFocus
    }

    FadingScroll {
        id: scroll

        // Scrolls so that `item`, if it lies inside the groups, is in view.
        function reveal(item) {
            let inside = item;
            while (inside && inside !== groups)
                inside = inside.parent;
            if (!inside)
                return;
            const y = item.mapToItem(groups, 0, 0).y + groups.y;
            if (y - 12 < contentY)
                contentY = Math.max(0, y - 12);
            else if (y + item.height + 12 > contentY + height)
                contentY = Math.min(y + item.height + 12 - height, Math.max(0, contentHeight - height));
        }

        anchors.fill: parent
        contentHeight: groups.implicitHeight + 56

        Column {
            id: groups

            x: 28
            y: 28
            width: scroll.width - 56
            spacing: 24

            Group {
                title: qsTr("Scanning")

                SettingRow {
                    id: sizeRow

                    title: qsTr("List files larger than")
                    detail: qsTr("Smaller files still count toward folder sizes.")

                    PillPicker {
                        options: settings.sizeLabels
                        currentIndex: settings.sizeIndex
                        compact: sizeRow.width < 560
                        Accessible.role: Accessible.PageTabList
                        Accessible.name: sizeRow.title
                        onActivated: index => settings.chooseSize(index)
                    }
                }
                SettingRow {
                    id: packagesRow

                    title: qsTr("Treat apps & bundles as one file")
                    detail: qsTr(".app, .photoslibrary, frameworks…")

                    RowSwitch {
                        checked: settings.treatPackagesAsFiles
                        Accessible.name: packagesRow.title
                        onToggled: settings.treatPackagesAsFiles = checked
                    }
                }
                SettingRow {
                    id: hiddenRow

                    title: qsTr("Skip hidden files")
                    detail: qsTr("Dotfiles and hidden folders are ignored.")

                    RowSwitch {
                        checked: settings.skipHiddenFiles
                        Accessible.name: hiddenRow.title
                        onToggled: settings.skipHiddenFiles = checked
                    }
                }
            }

            Group {
                title: qsTr("Never scan")

                Repeater {
                    model: settings.excludedRows

                    delegate: Item {
                        id: excluded

                        required property var modelData

                        width: parent ? parent.width : 0
                        height: 44

                        Rectangle {
                            x: 16
                            width: excluded.width - 32
                            height: 1
                            visible: excluded.y > 0
                            color: Look.line
                        }
                        SymbolIcon {
                            id: folderIcon

                            x: 16
                            anchors.verticalCenter: parent.verticalCenter
                            name: "folder.fill"
                            size: 16
                            color: Look.accent
                        }
                        Text {
                            anchors.left: folderIcon.right
                            anchors.leftMargin: 10
                            anchors.right: removeButton.left
                            anchors.rightMargin: 12
                            anchors.verticalCenter: parent.verticalCenter
                            text: excluded.modelData.display
                            elide: Text.ElideMiddle
                            font.pixelSize: 13
                            color: Look.ink
                        }
                        SorvelButton {
                            id: removeButton

                            anchors.right: parent.right
                            anchors.rightMargin: 12
                            anchors.verticalCenter: parent.verticalCenter
                            kind: SorvelButtonStyle.Secondary
                            size: SorvelButtonStyle.Small
                            symbol: "minus"
                            focusPolicy: Qt.StrongFocus
                            Accessible.name: qsTr("Remove %1").arg(excluded.modelData.display)
                            onClicked: settings.removeExcluded(excluded.modelData.path)
                        }
                    }
                }
                Item {
                    width: parent ? parent.width : 0
                    height: 48

                    Rectangle {
                        x: 16
                        width: parent.width - 32
                        height: 1
                        visible: parent.y > 0
                        color: Look.line
                    }
                    SorvelButton {
                        id: addButton

                        x: 12
                        anchors.verticalCenter: parent.verticalCenter
                        size: SorvelButtonStyle.Small
                        symbol: "plus"
                        text: qsTr("Add")
                        focusPolicy: Qt.StrongFocus
                        onClicked: settings.addExcluded()
                    }
                    Text {
                        anchors.left: addButton.right
                        anchors.leftMargin: 12
                        anchors.right: parent.right
                        anchors.rightMargin: 16
                        anchors.verticalCenter: parent.verticalCenter
                        text: qsTr("Folders added here are skipped in every scan.")
                        elide: Text.ElideRight
                        font.pixelSize: 12
                        color: Look.ink3
                    }
                }
                SettingRow {
                    id: trayRow

                    title: qsTr("Free space in the menu bar")
                    detail: settings.trayAvailable ? qsTr("Shows free space and quick actions in the menu bar.") : qsTr("This desktop shows no tray icons.")

                    RowSwitch {
                        checked: settings.showMenuBarExtra
                        Accessible.name: trayRow.title
                        onToggled: settings.showMenuBarExtra = checked
                    }
                }
                SettingRow {
                    id: accessRow

                    visible: settings.showsAccessRow
                    title: settings.hasFullDiskAccess ? qsTr("Full Disk Access granted") : qsTr("Full Disk Access needed")
                    detail: qsTr("Lets Sorvel Cleaner see every folder without repeated prompts.")

                    SorvelButton {
                        visible: !settings.hasFullDiskAccess
                        size: SorvelButtonStyle.Small
                        text: qsTr("Privacy Settings")
                        focusPolicy: Qt.StrongFocus
                        onClicked: settings.openFullDiskAccessSettings()
                    }
                }
            }

            Group {
                title: qsTr("What's safe to remove")
                symbol: "checkmark.shield"

                Repeater {
                    model: settings.legend

                    delegate: Item {
                        id: legendRow

                        required property var modelData
                        readonly property int level: modelData.level

                        width: parent ? parent.width : 0
                        implicitHeight: legendTexts.implicitHeight + 24
                        height: implicitHeight

                        Accessible.role: Accessible.StaticText
                        Accessible.name: modelData.title

                        Rectangle {
                            x: 16
                            width: legendRow.width - 32
                            height: 1
                            visible: legendRow.y > 0
                            color: Look.line
                        }
                        Rectangle {
                            x: 18
                            y: 12 + 5
                            width: 8
                            height: 8
                            radius: 4
                            visible: legendRow.level !== 4
                            color: legendRow.level === 0 ? Look.accent : legendRow.level === 2 ? Look.honeyInk : legendRow.level === 3 ? Look.ember : Look.ink2
                        }
                        SymbolIcon {
                            x: 16
                            y: 12 + 2
                            visible: legendRow.level === 4
                            name: "lock.fill"
                            size: 12
                            color: Look.ink2
                        }
                        Column {
                            id: legendTexts

                            x: 36
                            y: 12
                            width: legendRow.width - 52
                            spacing: 3

                            Text {
                                width: parent.width
                                text: legendRow.modelData.title
                                wrapMode: Text.Wrap
                                font.pixelSize: 13
                                font.weight: Font.DemiBold
                                color: Look.ink
                            }
                            Repeater {
                                model: legendRow.modelData.lines

                                delegate: Text {
                                    required property string modelData

                                    width: legendTexts.width
                                    text: modelData
                                    wrapMode: Text.Wrap
                                    font.pixelSize: 12
                                    color: Look.ink3
                                }
                            }
                        }
                    }
                }
                Item {
                    width: parent ? parent.width : 0
                    height: closing.implicitHeight + 24

                    Rectangle {
                        x: 16
                        width: parent.width - 32
                        height: 1
                        color: Look.line
                    }
                    Text {
                        id: closing

                        x: 16
                        anchors.verticalCenter: parent.verticalCenter
                        width: parent.width - 32
                        text: qsTr("Everything goes to the Trash first unless you choose Sorvelise Forever.")
                        wrapMode: Text.Wrap
                        font.pixelSize: 12
                        color: Look.ink2
                    }
                }
            }

            Group {
                title: qsTr("Credits")

                SettingRow {
                    title: qsTr("Lucide icons")
                    detail: qsTr("The icon set throughout the app, under the ISC licence.")
                }
                SettingRow {
                    title: qsTr("Steam textures")
                    detail: qsTr("The steam puffs and the honey glow, drawn by Sorvel Cleaner's own generator, src/look/artwork/ArtworkMaker.cpp in its repository.")
                }
            }
        }
    }
}
