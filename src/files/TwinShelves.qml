// The delegates reach the page's ids: Qt 6.4 refuses a component made inside a
// delegate (the file row's Loader) when the file's components are bound.
// qmllint disable unqualified
import QtQuick
import QtQuick.Controls
import Sorvel.Ui

// Files with identical contents: the threshold, the search in progress or its
// sets of copies, each with the copy that stays marked "newest".
Item {
    id: page

    signal preview(var details)

    TwinShelfModel {
        id: twins

        state: AppState
    }

    Item {
        id: top

        x: 32
        width: parent.width - 64
        height: 32

        Text {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - trailing.width - 16
            text: twins.subtitle
            elide: Text.ElideRight
            font.pixelSize: 12
            color: Look.ink3
        }
        Row {
            id: trailing

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: 10

            PillPicker {
                anchors.verticalCenter: parent.verticalCenter
                Accessible.name: qsTr("Smallest size to compare")
                options: twins.thresholdLabels
                currentIndex: twins.thresholdIndex
                onActivated: index => twins.minSize = [10000000, 100000000, 1000000000][index]
            }
            SorvelButton {
                anchors.verticalCenter: parent.verticalCenter
                visible: twins.content === "running"
                kind: SorvelButtonStyle.Secondary
                symbol: "stop.fill"
                text: qsTr("Stop")
                focusPolicy: Qt.StrongFocus
                onClicked: twins.stop()
            }
            SorvelButton {
                anchors.verticalCenter: parent.verticalCenter
                visible: twins.canSelectAll
                kind: SorvelButtonStyle.Primary
                symbol: "checklist.checked"
                text: qsTr("Select every extra copy")
                toolTip: qsTr("Keeps the newest copy of each set and selects the rest. Check that the copies being removed aren't the ones an app or project points to. A moved file can break links to it.")
                focusPolicy: Qt.StrongFocus
                onClicked: twins.selectAllExtras()
            }
        }
    }

    // 1. A search under way.
    Column {
        anchors.centerIn: parent
        visible: twins.content === "running"
        width: 360
        spacing: 12

        SorvelLoader {
            anchors.horizontalCenter: parent.horizontalCenter
            size: 28
        }
        MoltenProgress {
            width: parent.width
            value: twins.progress
            Accessible.name: qsTr("Comparing files")
        }
        Text {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: twins.status
            elide: Text.ElideMiddle
            font.pixelSize: 12
            color: Look.ink2
        }
    }

    // 2. Never searched.
    EmptyState {
        anchors.top: top.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        visible: twins.content === "neverRun"
        symbol: "square.on.square"
        title: qsTr("Find the twins")
        // A saved scan lists paths; the contents compared are this computer's.
        text: twins.savedScanText.length > 0
              ? twins.savedScanText + " " + qsTr("Bigger thresholds finish faster.")
              : qsTr("Sorvel Cleaner compares file contents from your last scan and shows only true copies. Bigger thresholds finish faster.")

        SorvelButton {
            kind: SorvelButtonStyle.Primary
            symbol: "square.on.square"
            text: qsTr("Find Twins")
            enabled: twins.canFind
            focusPolicy: Qt.StrongFocus
            onClicked: twins.find()
        }
    }

    // 3. Searched, nothing found.
    EmptyState {
        anchors.top: top.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        visible: twins.content === "noTwins"
        symbol: "checkmark"
        title: qsTr("No twins")
        text: twins.noTwinsText + (twins.unreadableText.length > 0 ? "\n" + twins.unreadableText : "")
              + (twins.savedScanText.length > 0 ? "\n" + twins.savedScanText : "")

        SorvelButton {
            symbol: "arrow.clockwise"
            text: qsTr("Search Again")
            focusPolicy: Qt.StrongFocus
            onClicked: twins.find()
        }
    }

    // 4. The sets of copies.
    Item {
        anchors.top: top.bottom
        anchors.topMargin: 8
        anchors.bottom: parent.bottom
        width: parent.width
        visible: twins.content === "list"

        Column {
            id: listTop

            x: 32
            width: parent.width - 64
            spacing: 10

            Rectangle {
                width: parent.width
                height: note.implicitHeight + 16
                radius: 10
                color: Look.withAlpha(Look.honey, 0.12)
                border.width: 1
                border.color: Look.withAlpha(Look.honey, 0.4)

                Row {
                    id: note

                    x: 12
                    anchors.verticalCenter: parent.verticalCenter
                    width: parent.width - 24
                    spacing: 8

                    SymbolIcon {
                        anchors.verticalCenter: parent.verticalCenter
                        name: "exclamationmark.circle"
                        size: 16
                        color: Look.honeyInk
                    }
                    Text {
                        width: parent.width - 24
                        // Nothing is selected from a saved scan: the note says what was compared.
                        text: (twins.canSelect ? qsTr("Selecting extras keeps the newest copy. Apps and projects sometimes point at a specific copy. Check the paths before sorvelising.")
                                               : twins.savedScanText)
                              + (twins.unreadableText.length > 0 ? "\n" + twins.unreadableText : "")
                        wrapMode: Text.WordWrap
                        font.pixelSize: 12
                        color: Look.ink
                    }
                }
            }
            Row {
                spacing: 10

                SearchField {
                    width: 260
                    placeholderText: qsTr("Filter by name or path")
                    Accessible.name: placeholderText
                    text: twins.search
                    onTextChanged: if (text !== twins.search) twins.search = text
                }
                SorvelButton {
                    id: sortButton

                    anchors.verticalCenter: parent.verticalCenter
                    size: SorvelButtonStyle.Small
                    symbol: "arrow.up.arrow.down"
                    text: qsTr("Sort")
                    toolTip: qsTr("Sort by")
                    focusPolicy: Qt.StrongFocus
                    onClicked: sortMenu.popup(sortButton, 0, sortButton.height + 4)

                    Menu {
                        id: sortMenu

                        Repeater {
                            model: twins.sorts

                            MenuItem {
                                required property var modelData

                                text: modelData.title
                                checkable: true
                                checked: modelData.raw === twins.sort
                                onTriggered: twins.sort = modelData.raw
                            }
                        }
                    }
                }
            }
        }

        ListView {
            id: list

            // Keys for the current row.
            signal toggleCurrent
            signal activateCurrent

            anchors.top: listTop.bottom
            anchors.topMargin: 8
            anchors.bottom: parent.bottom
            x: 24
            width: parent.width - 48
            model: twins
            clip: true
            spacing: 2
            boundsBehavior: Flickable.StopAtBounds
            activeFocusOnTab: true
            keyNavigationEnabled: true
            highlightMoveDuration: 0
            // Room to scroll the last rows clear of the selection bar.
            bottomMargin: Shell.hasSelection ? 84 : 0
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Sets of identical files")

            Keys.onSpacePressed: list.toggleCurrent()
            Keys.onReturnPressed: list.activateCurrent()
            Keys.onEnterPressed: list.activateCurrent()

            ScrollBar.vertical: SorvelScrollBar {}

            delegate: Item {
                id: cell

                required property int index
                required property bool isHeader
                required property int group
                required property string title
                required property string line
                required property var item
                required property bool isNewest

                readonly property bool current: list.activeFocus && ListView.isCurrentItem

                width: list.width
                height: isHeader ? 52 : 48

                // A set's header: the kept copy's name, the copies and the saving.
                Item {
                    anchors.fill: parent
                    visible: cell.isHeader

                    Rectangle {
                        anchors.fill: parent
                        anchors.topMargin: 8
                        radius: 8
                        color: "transparent"
                        border.width: cell.current ? 2 : 0
                        border.color: Look.accent
                    }
                    Column {
                        x: 8
                        anchors.bottom: parent.bottom
                        anchors.bottomMargin: 4
                        Text {
                            text: cell.title
                            font.pixelSize: 14
                            font.weight: Font.Bold
                            color: Look.ink
                        }
                        Text {
                            text: cell.line
                            font.pixelSize: 11
                            color: Look.ink3
                        }
                    }
                    SorvelButton {
                        id: selectExtras

                        anchors.right: parent.right
                        anchors.rightMargin: 8
                        anchors.bottom: parent.bottom
                        anchors.bottomMargin: 6
                        size: SorvelButtonStyle.Small
                        kind: SorvelButtonStyle.Ghost
                        visible: twins.canSelect
                        text: qsTr("Select extras")
                        onClicked: twins.selectExtras(cell.group)
                    }
                }
                Loader {
                    id: rowLoader

                    anchors.fill: parent
                    active: !cell.isHeader
                    sourceComponent: ItemRow {
                        item: cell.item
                        subtitle: cell.line
                        badge: cell.isNewest ? qsTr("newest") : ""
                        canPreview: true
                        current: cell.current
                        onPreview: page.preview(twins.previewDetails(cell.index))
                    }
                }
                Connections {
                    target: list
                    enabled: cell.ListView.isCurrentItem
                    function onToggleCurrent() {
                        if (cell.isHeader)
                            twins.selectExtras(cell.group);
                        else
                            (rowLoader.item as ItemRow)?.toggle();
                    }
                    function onActivateCurrent() {
                        if (!cell.isHeader)
                            page.preview(twins.previewDetails(cell.index));
                    }
                }
            }
        }
    }
}
