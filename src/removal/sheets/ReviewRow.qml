pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Sorvel.Ui

// One selected item in the review: its tick, picture, name, detail, size and
// badge; a Deep Clean location can show what it holds.
Column {
    id: row

    required property var modelData
    required property ReviewModel review

    // A control of the row took the keyboard focus: the list shows it.
    signal focusedControl(Item control)

    Item {
        width: row.width
        height: row.modelData.inside.length > 0 ? 58 : 44

        SorvelCheck {
            id: tick
            anchors.verticalCenter: parent.verticalCenter
            checked: row.modelData.ticked
            objectName: "rowTick"
            Accessible.name: row.modelData.name
            onClicked: row.review.toggle(row.modelData.id)
            onActiveFocusChanged: if (activeFocus) row.focusedControl(tick)
            // The menu key (or Shift+F10) opens the row's menu beside the tick.
            Keys.onPressed: event => {
                if (event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier)) {
                    menu.popup(tick, tick.width, tick.height / 2);
                    event.accepted = true;
                }
            }
        }
        Item {
            id: icon
            x: tick.width + 10
            anchors.verticalCenter: parent.verticalCenter
            width: 24
            height: 24
            SymbolIcon {
                visible: row.modelData.isJunk
                anchors.centerIn: parent
                name: "sparkles"
                size: 18
                color: Look.accent
            }
            FileIconView {
                visible: !row.modelData.isJunk
                anchors.centerIn: parent
                path: row.modelData.iconPath
                size: 24
            }
        }
        Column {
            anchors.left: icon.right
            anchors.leftMargin: 10
            anchors.right: trailing.left
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            opacity: row.modelData.ticked ? 1 : 0.5
            Text {
                width: parent.width
                text: row.modelData.name
                elide: Text.ElideMiddle
                font.pixelSize: 13
                color: Look.ink
            }
            Text {
                visible: text.length > 0
                width: parent.width
                text: row.modelData.detail
                elide: Text.ElideRight
                font.pixelSize: 11
                color: Look.ink3
            }
            Text {
                visible: text.length > 0
                width: parent.width
                text: row.modelData.inside
                elide: Text.ElideRight
                font.pixelSize: 11
                font.weight: Font.Medium
                color: Look.ember
            }
        }
        Row {
            id: trailing
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: 8
            SorvelButton {
                id: disclose
                visible: row.modelData.isJunk && row.modelData.locationId.length > 0
                kind: SorvelButtonStyle.Ghost
                size: SorvelButtonStyle.Small
                symbol: row.modelData.expanded ? "chevron.up" : "chevron.down"
                text: row.modelData.expanded ? qsTr("Hide") : qsTr("Show items")
                onClicked: row.review.toggleExpanded(row.modelData.id)
                onActiveFocusChanged: if (activeFocus) row.focusedControl(disclose)
            }
            Badge {
                visible: row.modelData.badge.length > 0
                anchors.verticalCenter: parent.verticalCenter
                text: row.modelData.badge
                symbol: row.modelData.badge === qsTr("kept") ? "lock.fill" : ""
            }
            RiskBadge {
                visible: row.modelData.badge.length === 0 && level !== 1 && title.length > 0
                anchors.verticalCenter: parent.verticalCenter
                level: row.modelData.riskLevel
                title: row.modelData.riskTitle
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: row.modelData.sizeText
                font.pixelSize: 12
                color: Look.ink2
            }
        }
        TapHandler {
            acceptedButtons: Qt.RightButton
            onTapped: menu.popup()
        }
        Menu {
            id: menu
            MenuItem {
                text: qsTr("Copy Path")
                enabled: !row.modelData.isJunk
                onTriggered: row.review.copyPath(row.modelData.id)
            }
            MenuItem {
                text: qsTr("Show in Finder")
                enabled: !row.modelData.isJunk
                onTriggered: row.review.reveal(row.modelData.id)
            }
            MenuItem {
                text: qsTr("Remove from Selection")
                onTriggered: row.review.removeFromSelection(row.modelData.id)
            }
        }
    }
    Loader {
        active: row.modelData.expanded
        width: row.width
        sourceComponent: JunkContentsList {
            leftPadding: 34
            locationId: row.modelData.locationId
            limit: 50
            selectable: true
        }
    }
}
