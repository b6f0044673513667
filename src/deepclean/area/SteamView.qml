import QtQuick
import QtQuick.Controls
import QtQuick.Templates as T
import Sorvel.Ui

// The Deep Clean area: the measured caches and leftovers of this system and the
// build output of the last scan, each with its tick, and "Select everything
// safe". The model measures the locations the first time the area shows.
// qmllint disable unqualified
Item {
    id: view

    SteamModel {
        id: steam

        state: AppState
    }

    Item {
        id: top

        x: 32
        width: parent.width - 64
        height: 30

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Caches, leftovers and build junk that are safe to sorvelise")
            font.pixelSize: 12
            color: Look.ink3
        }
        SorvelButton {
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            size: SorvelButtonStyle.Small
            symbol: "arrow.clockwise"
            text: qsTr("Measure Again")
            enabled: !steam.isMeasuring
            focusPolicy: Qt.StrongFocus
            onClicked: steam.measureAgain()
        }
    }

    Column {
        id: controls

        anchors.top: top.bottom
        anchors.topMargin: 10
        x: 32
        width: parent.width - 64
        spacing: 12

        Row {
            spacing: 10

            SearchField {
                width: 260
                placeholderText: qsTr("Search caches & projects")
                Accessible.name: placeholderText
                text: steam.search
                onTextChanged: if (text !== steam.search) steam.search = text
            }
            PillPicker {
                readonly property var choices: steam.filters

                anchors.verticalCenter: parent.verticalCenter
                Accessible.name: qsTr("Show")
                options: choices.map(f => f.title)
                currentIndex: choices.findIndex(f => f.raw === steam.filter)
                onActivated: index => steam.filter = choices[index].raw
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
                        model: steam.sorts

                        MenuItem {
                            required property var modelData

                            text: modelData.title
                            checkable: true
                            checked: modelData.raw === steam.sort
                            onTriggered: steam.sort = modelData.raw
                        }
                    }
                }
            }
        }
        Row {
            spacing: 12
            // Nothing is known before the first measurement ends.
            visible: !steam.firstMeasure

            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: steam.summary
                font.pixelSize: 14
                font.weight: Font.DemiBold
                color: Look.ink
            }
            SorvelButton {
                anchors.verticalCenter: parent.verticalCenter
                kind: SorvelButtonStyle.Primary
                symbol: "checklist.checked"
                text: qsTr("Select everything safe")
                enabled: steam.canSelectSafe
                focusPolicy: Qt.StrongFocus
                onClicked: steam.selectEverythingSafe()
            }
        }
    }

    // Only the very first measurement has the page to itself.
    Column {
        anchors.centerIn: parent
        visible: steam.firstMeasure
        spacing: 12

        SorvelLoader {
            anchors.horizontalCenter: parent.horizontalCenter
            size: 28
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: qsTr("Measuring the grime…")
            font.pixelSize: 15
            font.weight: Font.DemiBold
            color: Look.ink
        }
    }

    EmptyState {
        anchors.top: controls.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        visible: !steam.firstMeasure && steam.nothingMatches
        symbol: "magnifyingglass"
        title: qsTr("Nothing matches")
        text: qsTr("Try another filter or search.")

        SorvelButton {
            text: qsTr("Show Everything")
            focusPolicy: Qt.StrongFocus
            onClicked: steam.showEverything()
        }
    }

    Flickable {
        id: flick

        // Scrolls so that `item`, inside the sections, is in view.
        function reveal(item) {
            const y = item.mapToItem(sections, 0, 0).y;
            if (y < contentY)
                contentY = y;
            else if (y + item.height > contentY + height)
                contentY = Math.min(y + item.height - height, Math.max(0, contentHeight - height));
        }

        anchors.top: controls.bottom
        anchors.topMargin: 12
        anchors.bottom: parent.bottom
        x: 24
        width: parent.width - 48
        visible: !steam.firstMeasure && !steam.nothingMatches
        clip: true
        contentHeight: sections.implicitHeight + (Shell.hasSelection ? 96 : 16)
        boundsBehavior: Flickable.StopAtBounds
        T.ScrollBar.vertical: SorvelScrollBar {}

        Column {
            id: sections

            width: parent.width
            spacing: 2

            Shelf {
                width: parent.width
                visible: steam.locations.length > 0
                title: qsTr("Caches & leftovers")
            }
            // By count, so a row that only changes (folded, remeasured) stays
            // the same item and keeps the keyboard focus.
            Repeater {
                model: steam.locations.length

                Column {
                    id: location

                    required property int index
                    readonly property var modelData: steam.locations[index]

                    width: sections.width

                    ItemRow {
                        width: parent.width
                        activeFocusOnTab: true
                        current: activeFocus
                        onActiveFocusChanged: if (activeFocus) flick.reveal(location)
                        Keys.onSpacePressed: toggle()
                        // Right unfolds the contents, Left folds them.
                        Keys.onRightPressed: if (!location.modelData.expanded) steam.toggleExpanded(location.modelData.id)
                        Keys.onLeftPressed: if (location.modelData.expanded) steam.toggleExpanded(location.modelData.id)
                        item: location.modelData.item
                        subtitle: location.modelData.subtitle
                        weight: location.modelData.weight
                        symbol: location.modelData.symbol
                        badge: location.modelData.lookFirst ? qsTr("look first") : ""
                        showsRisk: !location.modelData.lookFirst
                        disabled: !location.modelData.canTick
                        expanded: location.modelData.expanded ? 1 : 0
                        onDisclose: steam.toggleExpanded(location.modelData.id)
                    }
                    Loader {
                        active: location.modelData.expanded
                        visible: active
                        width: parent.width
                        sourceComponent: JunkContentsList {
                            leftPadding: 70
                            locationId: location.modelData.id
                            limit: 12
                            selectable: true
                        }
                    }
                }
            }

            Shelf {
                width: parent.width
                visible: !steam.hasResult || steam.artifacts.length > 0
                title: qsTr("Build junk")
            }
            Text {
                visible: !steam.hasResult
                x: 8
                width: parent.width - 16
                text: qsTr("Scan a folder with your code projects to lay out node_modules, build output and virtualenvs here.")
                wrapMode: Text.WordWrap
                font.pixelSize: 12
                color: Look.ink3
            }
            Repeater {
                model: steam.artifacts.length

                ItemRow {
                    id: artifactRow

                    required property int index
                    readonly property var modelData: steam.artifacts[index]

                    width: sections.width
                    activeFocusOnTab: true
                    current: activeFocus
                    onActiveFocusChanged: if (activeFocus) flick.reveal(artifactRow)
                    Keys.onSpacePressed: toggle()
                    Keys.onReturnPressed: activate()
                    Keys.onEnterPressed: activate()
                    symbol: "hammer"
                    item: modelData.item
                    subtitle: modelData.subtitle
                    weight: modelData.weight
                    canOpen: true
                    onOpen: steam.openArtifact(modelData.path)
                }
            }

            // Jobs that are not removals of items: emptying the Trash.
            Text {
                topPadding: 18
                bottomPadding: 8
                x: 8
                text: qsTr("DRAINS")
                font.pixelSize: 11
                font.weight: Font.Bold
                font.letterSpacing: 1.2
                color: Look.ink3
                Accessible.role: Accessible.Heading
                Accessible.name: qsTr("Drains")
            }
            Row {
                x: 8
                spacing: 12

                DrainPlate {
                    width: Math.min(320, (sections.width - 28) / 2)
                    symbol: "trash"
                    title: qsTr("Trash")
                    value: steam.trashValue
                    action: qsTr("Empty…")
                    actionName: qsTr("Empty Trash")
                    onPerform: steam.emptyTrash()
                    onFocused: button => flick.reveal(button)
                }
                DrainPlate {
                    visible: steam.hasSimulators
                    width: Math.min(320, (sections.width - 28) / 2)
                    symbol: "ipad.and.iphone"
                    title: qsTr("Dead simulators")
                    action: qsTr("Remove…")
                    actionName: qsTr("Remove unavailable simulators")
                    onPerform: steam.removeSimulators()
                    onFocused: button => flick.reveal(button)
                }
            }
        }
    }
}
