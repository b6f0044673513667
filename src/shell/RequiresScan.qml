import QtQuick
import Sorvel.Ui

// Shows its content once there is a scan result; while a scan runs, what is
// being read; before any scan, an empty state that offers one.
Item {
    id: gate

    // The sidebar item the content belongs to (its raw value).
    property string item
    property string itemTitle
    property string itemCaption
    default property alias content: slot.data

    Item {
        id: slot

        anchors.fill: parent
        visible: Shell.hasResult
    }

    Column {
        anchors.centerIn: parent
        visible: !slot.visible && AppState.isScanning
        spacing: 12

        SorvelLoader {
            anchors.horizontalCenter: parent.horizontalCenter
            size: 28
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: Shell.scan.readingText
            font.pixelSize: 17
            font.weight: Font.DemiBold
            color: Look.ink
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: Shell.scan.filesText
            font.pixelSize: 12
            color: Look.ink3
        }
    }

    EmptyState {
        anchors.fill: parent
        visible: !slot.visible && !AppState.isScanning
        symbol: "doc.on.doc"
        title: qsTr("Nothing to clean yet")
        text: qsTr("Scan a folder or your whole disk and ") + gate.itemTitle + qsTr(" will show ") + gate.itemCaption
              + qsTr(".")

        SorvelButton {
            kind: SorvelButtonStyle.Primary
            symbol: "house.fill"
            text: qsTr("Scan Home")
            onClicked: AppState.scanText(Shell.homePath)
        }
        SorvelButton {
            text: qsTr("Choose Folder…")
            onClicked: AppState.chooseFolderAndScan()
        }
    }
}
