pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Window
import Sorvel.Ui

// The tray's panel: what this session freed, the free space of the first
// volumes, the scan under way, and the rows that bring the main window back.
// The app shows it beside the tray icon; it hides when it loses the focus.
Window {
    id: panel

    readonly property TrayModel model: TrayModel {
        id: tray
    }

    width: 280
    height: content.implicitHeight + 16
    flags: Qt.Popup | Qt.FramelessWindowHint
    color: "transparent"
    title: qsTr("Sorvel Cleaner")

    onVisibleChanged: {
        if (visible) {
            tray.refresh();
            content.nextItemInFocusChain(true).forceActiveFocus();
        }
    }
    onActiveChanged: if (!active && visible) hide()

    Rectangle {
        anchors.fill: parent
        radius: 14
        color: Look.panel
        border.width: 1
        border.color: Look.line

        Keys.onEscapePressed: panel.hide()

        Column {
            id: content

            x: 8
            y: 8
            width: parent.width - 16
            spacing: 4

            Row {
                leftPadding: 8
                topPadding: 4
                bottomPadding: 4
                spacing: 8

                SymbolIcon {
                    anchors.verticalCenter: parent.verticalCenter
                    name: "humidity.fill"
                    size: 18
                    color: Look.accent
                }
                Text {
                    id: freed

                    anchors.verticalCenter: parent.verticalCenter
                    text: tray.freedText
                    font.pixelSize: 15
                    font.weight: Font.Bold
                    color: Look.ink
                    Accessible.name: qsTr("Freed this session: %1").arg(text)
                }
                Text {
                    anchors.baseline: freed.baseline
                    text: qsTr("sorvelised this session")
                    font.pixelSize: 12
                    color: Look.ink3
                }
            }
            Text {
                leftPadding: 34
                visible: tray.trashedText.length > 0
                text: tray.trashedText
                font.pixelSize: 12
                color: Look.ink3
            }
            Repeater {
                model: tray.volumes

                Item {
                    id: volumeRow

                    required property var modelData

                    width: content.width
                    height: 22

                    Text {
                        x: 8
                        width: parent.width - free.width - 24
                        anchors.verticalCenter: parent.verticalCenter
                        text: volumeRow.modelData.name
                        elide: Text.ElideRight
                        font.pixelSize: 12
                        color: Look.ink2
                    }
                    Text {
                        id: free

                        anchors.right: parent.right
                        anchors.rightMargin: 8
                        anchors.verticalCenter: parent.verticalCenter
                        text: volumeRow.modelData.free
                        font.pixelSize: 12
                        color: Look.ink3
                    }
                }
            }
            Column {
                visible: tray.isScanning
                leftPadding: 8
                topPadding: 4
                spacing: 1

                Text {
                    text: tray.readingText
                    width: content.width - 16
                    elide: Text.ElideMiddle
                    font.pixelSize: 12
                    font.weight: Font.DemiBold
                    color: Look.ink
                }
                Text {
                    text: tray.filesText
                    font.pixelSize: 11
                    color: Look.ink3
                }
            }
            Rectangle {
                width: content.width
                height: 9
                color: "transparent"

                Rectangle {
                    anchors.centerIn: parent
                    width: parent.width - 16
                    height: 1
                    color: Look.line
                }
            }
            Column {
                id: rowsColumn

                width: content.width

                Repeater {
                    model: tray.rows

                    Rectangle {
                        id: row

                        required property var modelData

                        width: rowsColumn.width
                        height: 30
                        radius: 7
                        color: hover.hovered || activeFocus ? Look.sorvelSubtle : "transparent"
                        activeFocusOnTab: true

                        Accessible.role: Accessible.MenuItem
                        Accessible.name: modelData.title
                        Accessible.onPressAction: row.trigger()

                        function trigger() {
                            panel.hide();
                            tray.trigger(modelData.action);
                        }

                        Keys.onReturnPressed: row.trigger()
                        Keys.onEnterPressed: row.trigger()
                        Keys.onSpacePressed: row.trigger()
                        Keys.onDownPressed: row.nextItemInFocusChain(true).forceActiveFocus()
                        Keys.onUpPressed: row.nextItemInFocusChain(false).forceActiveFocus()

                        Row {
                            x: 8
                            anchors.verticalCenter: parent.verticalCenter
                            spacing: 10

                            SymbolIcon {
                                anchors.verticalCenter: parent.verticalCenter
                                name: row.modelData.symbol
                                size: 15
                                color: Look.ink2
                            }
                            Text {
                                anchors.verticalCenter: parent.verticalCenter
                                text: row.modelData.title
                                font.pixelSize: 13
                                color: Look.ink
                            }
                        }
                        FocusRing {
                            shown: row.activeFocus
                            baseRadius: row.radius
                            offset: -1
                        }
                        HoverHandler {
                            id: hover
                        }
                        TapHandler {
                            onTapped: row.trigger()
                        }
                    }
                }
            }
        }
    }
}
