pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Sorvel.Ui

// What a Deep Clean location holds, each entry with its own tick.
Column {
    id: list

    property alias locationId: contents.locationId
    property alias limit: contents.limit
    property bool selectable: true

    readonly property JunkContentsModel model: JunkContentsModel {
        id: contents
    }

    spacing: 2

    Row {
        visible: contents.loading
        spacing: 8
        SorvelLoader {
            width: 14
            height: 14
        }
        Text {
            text: qsTr("Listing what's inside…")
            font.pixelSize: 11
            color: Look.ink3
        }
    }
    Text {
        visible: contents.empty
        text: qsTr("Already empty")
        font.pixelSize: 11
        color: Look.ink3
    }
    Repeater {
        model: contents.entries

        Item {
            id: entry

            required property var modelData
            width: list.width - list.leftPadding
            height: 24

            SorvelCheck {
                id: tick
                visible: list.selectable
                size: 14
                anchors.verticalCenter: parent.verticalCenter
                checked: entry.modelData.ticked
                Accessible.name: entry.modelData.name
                onClicked: contents.toggle(entry.modelData.path)
                SorvelToolTip {
                    visible: tick.hovered && entry.modelData.help.length > 0
                    text: entry.modelData.help
                }
            }
            Text {
                x: list.selectable ? tick.width + 8 : 0
                width: parent.width - x - size.width - 8
                anchors.verticalCenter: parent.verticalCenter
                text: entry.modelData.name
                elide: Text.ElideMiddle
                font.pixelSize: 12
                color: Look.ink2
            }
            Text {
                id: size
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                text: entry.modelData.sizeText
                font.pixelSize: 11
                color: Look.ink3
            }
            TapHandler {
                acceptedButtons: Qt.RightButton
                onTapped: menu.popup()
            }
            Menu {
                id: menu
                MenuItem {
                    text: qsTr("Copy Path")
                    onTriggered: contents.copyPath(entry.modelData.path)
                }
                MenuItem {
                    text: qsTr("Show in Finder")
                    onTriggered: contents.reveal(entry.modelData.path)
                }
            }
        }
    }
    Text {
        visible: text.length > 0
        x: list.selectable ? 22 : 0
        text: contents.rest
        font.pixelSize: 11
        color: Look.ink3
    }
}
