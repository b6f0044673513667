pragma ComponentBehavior: Bound
import QtQuick
import Sorvel.Ui

// Above the welcome picture: what the application does and where to start.
Column {
    id: welcome

    required property SpaceModel space

    spacing: 10

    Text {
        text: qsTr("Turn junk into thin air.")
        font.pixelSize: 26
        font.weight: Font.Bold
        color: Look.ink
    }
    Text {
        width: Math.min(620, welcome.width)
        wrapMode: Text.WordWrap
        text: qsTr("Scan, and these placeholders become your real folders. Stained ones are grime that's safe to clear, swollen ones are the heaviest. Tick what you don't need and the steamer sorvelises it, to the Trash first.")
        font.pixelSize: 13
        lineHeight: 1.15
        color: Look.ink2
    }
    Row {
        spacing: 8
        topPadding: 4

        SorvelButton {
            kind: SorvelButtonStyle.Primary
            symbol: "house.fill"
            text: qsTr("Scan Home")
            onClicked: AppState.scanText(Shell.homePath)
        }
        SorvelButton {
            symbol: "internaldrive"
            text: qsTr("Entire Disk")
            onClicked: AppState.scanText("/")
        }
        SorvelButton {
            symbol: "folder"
            text: qsTr("Choose Folder…")
            onClicked: AppState.chooseFolderAndScan()
        }
        Rectangle {
            visible: welcome.space.recents.length > 0
            width: 1
            height: 22
            anchors.verticalCenter: parent.verticalCenter
            color: Look.line
        }
        Repeater {
            model: welcome.space.recents
            delegate: SorvelButton {
                required property var modelData
                kind: SorvelButtonStyle.Ghost
                size: SorvelButtonStyle.Small
                text: modelData.title
                toolTip: modelData.help
                onClicked: AppState.scanText(modelData.path)
            }
        }
    }
    Text {
        visible: !AppState.hasFullDiskAccess
        text: "<a href='#'>" + qsTr("Give Sorvel Cleaner Full Disk Access for complete results") + "</a>"
        linkColor: Look.accent
        font.pixelSize: 12
        onLinkActivated: welcome.space.openFullDiskAccessSettings()
    }
}
