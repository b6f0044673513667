pragma ComponentBehavior: Bound
import QtQml
import QtQuick
import Sorvel.Ui

// Search, filter chips, sort and layout of the shown folder.
Item {
    id: bar

    required property SpaceModel space
    property alias searchField: search

    implicitHeight: 32

    Row {
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        spacing: 10

        SearchField {
            id: search

            width: 210
            placeholderText: qsTr("Search this folder")
            text: bar.space.search
            onTextChanged: if (text !== bar.space.search) bar.space.search = text
            Connections {
                target: bar.space
                function onSearchChanged() {
                    if (search.text !== bar.space.search)
                        search.text = bar.space.search;
                }
            }
        }

        Row {
            anchors.verticalCenter: parent.verticalCenter
            spacing: 6
            Repeater {
                model: bar.space.filters
                delegate: Rectangle {
                    id: chip

                    required property var modelData
                    readonly property bool on: bar.space.filter === modelData.value
                    readonly property color tint: modelData.value === "stained" ? Look.accent
                                                : modelData.value === "bloated" ? Look.honey
                                                : modelData.value === "selected" ? Look.accent : Look.ink2

                    width: chipText.implicitWidth + 22
                    height: 26
                    radius: 13
                    color: on ? Look.withAlpha(tint, 0.18) : chipHover.hovered ? Look.glass : "transparent"
                    border.width: 1
                    border.color: on ? Look.withAlpha(tint, 0.6) : Look.line
                    Accessible.role: Accessible.RadioButton
                    Accessible.name: modelData.title
                    Accessible.checked: on
                    Accessible.focusable: true
                    activeFocusOnTab: true
                    Keys.onSpacePressed: bar.space.chooseFilter(chip.modelData.value)
                    Keys.onReturnPressed: bar.space.chooseFilter(chip.modelData.value)
                    Keys.onEnterPressed: bar.space.chooseFilter(chip.modelData.value)

                    FocusRing {
                        shown: chip.activeFocus
                        baseRadius: chip.radius
                    }

                    Text {
                        id: chipText
                        anchors.centerIn: parent
                        text: chip.modelData.title
                        font.pixelSize: 12
                        font.weight: chip.on ? Font.DemiBold : Font.Normal
                        color: chip.on ? Look.ink : Look.ink2
                    }
                    HoverHandler {
                        id: chipHover
                    }
                    MouseArea {
                        objectName: "filterChip"
                        anchors.fill: parent
                        onClicked: bar.space.chooseFilter(chip.modelData.value, 1, true)
                        onDoubleClicked: bar.space.chooseFilter(chip.modelData.value, 2, true)
                    }
                }
            }
        }
    }

    Row {
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: 10

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Sort")
            font.pixelSize: 12
            color: Look.ink3
        }
        SorvelButton {
            id: sortButton
            size: SorvelButtonStyle.Small
            anchors.verticalCenter: parent.verticalCenter
            text: {
                const sorts = bar.space.sorts;
                for (let i = 0; i < sorts.length; ++i)
                    if (sorts[i].value === bar.space.sort)
                        return sorts[i].title;
                return "";
            }
            onClicked: sortMenu.popupAt(0, height + 4)
            TileMenu {
                id: sortMenu
                implicitWidth: 140
                entries: {
                    const sorts = bar.space.sorts;
                    const list = [];
                    for (let i = 0; i < sorts.length; ++i)
                        list.push({ text: sorts[i].title, action: sorts[i].value });
                    return list;
                }
                onChosen: action => bar.space.sort = action
            }
        }
        PillPicker {
            anchors.verticalCenter: parent.verticalCenter
            compact: true
            accessibleName: qsTr("Layout")
            options: [qsTr("Icons"), qsTr("List")]
            symbols: ["square.grid.2x2", "list.bullet"]
            toolTips: [qsTr("Show as icons"), qsTr("Show as list")]
            currentIndex: bar.space.layout === "list" ? 1 : 0
            onActivated: index => bar.space.layout = index === 1 ? "list" : "icons"
        }
    }
}
