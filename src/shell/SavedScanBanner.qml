import QtQuick
import Sorvel.Ui

// Above the views while a saved scan is shown: whose scan it is, from when,
// that nothing of it can be removed, and, where its folder is on this
// machine, a way to scan that folder again.
Item {
    id: banner

    readonly property bool shown: AppState.isSavedScan

    implicitHeight: shown ? card.height : 0
    visible: shown

    Rectangle {
        id: card

        width: parent.width
        height: Math.max(44, row.implicitHeight + 16)
        radius: 10
        color: Look.well
        border.color: Look.line

        Accessible.role: Accessible.StaticText
        Accessible.name: AppState.savedScanText

        Row {
            id: row

            anchors.left: parent.left
            anchors.leftMargin: 14
            anchors.right: parent.right
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            spacing: 10

            SymbolIcon {
                anchors.verticalCenter: parent.verticalCenter
                name: "lock.fill"
                size: 16
                color: Look.ink2
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                width: row.width - 26 - (rescan.visible ? rescan.width + 10 : 0)
                text: AppState.savedScanText
                wrapMode: Text.Wrap
                font.pixelSize: 13
                color: Look.ink2
            }
            SorvelButton {
                id: rescan

                anchors.verticalCenter: parent.verticalCenter
                visible: AppState.canRescanSavedScan
                symbol: "arrow.clockwise"
                text: qsTr("Scan Again")
                Accessible.name: qsTr("Scan this folder again on this computer")
                onClicked: AppState.rescanSavedScan()
            }
        }
    }
}
