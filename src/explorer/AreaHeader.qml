pragma ComponentBehavior: Bound
import QtQuick
import Sorvel.Ui

// The header above an area's content: its items as tabs (or a plain title for
// a single one) with an underline that slides to the current item, a subtitle
// below, and room for a trailing view on the right.
Item {
    id: header

    property string subtitle
    default property alias trailing: trailingSlot.data

    implicitHeight: column.implicitHeight + 8
    implicitWidth: 600

    Column {
        id: column

        spacing: 4

        Item {
            width: tabs.width
            height: tabs.height + 6

            Row {
                id: tabs

                spacing: 22

                Repeater {
                    model: Shell.areaItems

                    delegate: Text {
                        id: tab

                        required property var modelData
                        readonly property bool current: modelData.raw === AppState.section

                        y: tabs.height - height
                        text: modelData.title
                        font.pixelSize: current || Shell.areaItems.length === 1 ? 25 : 19
                        font.weight: current ? Font.Bold : Font.DemiBold
                        color: current ? Look.ink : tabHover.hovered ? Look.ink2 : Look.ink3

                        Accessible.role: Accessible.PageTab
                        Accessible.name: modelData.title
                        Accessible.focusable: Shell.areaItems.length > 1
                        Accessible.selected: current

                        // With more than one item, each tab is a stop; Space or
                        // Return shows it.
                        activeFocusOnTab: Shell.areaItems.length > 1
                        Keys.onSpacePressed: AppState.section = tab.modelData.raw
                        Keys.onReturnPressed: AppState.section = tab.modelData.raw
                        Keys.onEnterPressed: AppState.section = tab.modelData.raw
                        FocusRing {
                            shown: tab.activeFocus
                            baseRadius: 4
                        }

                        HoverHandler {
                            id: tabHover
                        }
                        MouseArea {
                            objectName: "areaTab"
                            anchors.fill: parent
                            enabled: Shell.areaItems.length > 1
                            onClicked: Shell.goToSection(tab.modelData.raw, 1, true)
                            onDoubleClicked: Shell.goToSection(tab.modelData.raw, 2, true)
                        }
                    }
                }
            }

            Rectangle {
                readonly property Item target: {
                    for (let i = 0; i < tabs.children.length; ++i) {
                        const child = tabs.children[i] as Text;
                        if (child && child.text === header.currentTitle)
                            return child;
                    }
                    return null;
                }

                visible: Shell.areaItems.length > 1 && target !== null
                y: tabs.height + 2
                x: target ? target.x : 0
                width: target ? target.width : 0
                height: 3
                radius: 1.5
                color: Look.accent

                Behavior on x { Movement { curve: Look.indicator } }
                Behavior on width { Movement { curve: Look.indicator } }
            }
        }

        Text {
            visible: header.subtitle.length > 0
            text: header.subtitle
            font.pixelSize: 12
            color: Look.ink3
        }
    }

    readonly property string currentTitle: {
        const items = Shell.areaItems;
        for (let i = 0; i < items.length; ++i)
            if (items[i].raw === AppState.section)
                return items[i].title;
        return "";
    }

    Item {
        id: trailingSlot

        anchors.right: parent.right
        anchors.verticalCenter: column.verticalCenter
        width: children.length > 0 ? children[0].implicitWidth : 0
        height: children.length > 0 ? children[0].implicitHeight : 0
    }
}
