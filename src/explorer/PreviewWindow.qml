import QtQuick
import QtQuick.Controls
import QtQuick.Window
import Sorvel.Ui

// A quick look at one file: an image or text is shown, anything else by its
// details; "Open" hands it to the default application.
Window {
    id: preview
    objectName: "previewWindow"

    property var details: ({})

    function show(d) {
        details = d;
        visible = true;
        raise();
        requestActivate();
    }

    width: 640
    height: 520
    minimumWidth: 320
    minimumHeight: 240
    title: details.name ?? ""
    color: Look.canvas

    Shortcut {
        // The linter of Qt 6.4 finds no enumeration on the StandardKey value type.
        sequences: [StandardKey.Cancel, "Space"] // qmllint disable unqualified
        onActivated: preview.close()
    }

    Item {
        anchors.fill: parent
        anchors.margins: 16
        anchors.bottomMargin: 64

        Image {
            anchors.fill: parent
            visible: preview.details.kind === "image"
            source: preview.details.kind === "image" ? preview.details.url : ""
            fillMode: Image.PreserveAspectFit
            asynchronous: true
            sourceSize.width: 2048
            sourceSize.height: 2048
        }
        ScrollView {
            anchors.fill: parent
            visible: preview.details.kind === "text"
            TextArea {
                readOnly: true
                text: preview.details.text ?? ""
                font.family: "monospace"
                font.pixelSize: 12
                color: Look.ink
                wrapMode: TextEdit.Wrap
                background: Rectangle {
                    color: Look.well
                    radius: 8
                }
            }
        }
        Column {
            anchors.centerIn: parent
            visible: preview.details.kind === "other"
            spacing: 10
            FileIconView {
                anchors.horizontalCenter: parent.horizontalCenter
                path: preview.details.path ?? ""
                size: 96
            }
            Text {
                anchors.horizontalCenter: parent.horizontalCenter
                text: preview.details.name ?? ""
                font.pixelSize: 16
                font.weight: Font.Bold
                color: Look.ink
            }
            Text {
                anchors.horizontalCenter: parent.horizontalCenter
                text: [preview.details.type, preview.details.size].filter(s => s && s.length > 0).join(" · ")
                font.pixelSize: 12
                color: Look.ink2
            }
            Text {
                anchors.horizontalCenter: parent.horizontalCenter
                text: preview.details.modified ?? ""
                font.pixelSize: 12
                color: Look.ink3
            }
        }
    }
    Row {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: 16
        spacing: 10
        Text {
            width: parent.width - openButton.width - 10
            anchors.verticalCenter: parent.verticalCenter
            text: preview.details.location ?? ""
            elide: Text.ElideMiddle
            font.pixelSize: 12
            color: Look.ink3
        }
        SorvelButton {
            id: openButton
            kind: SorvelButtonStyle.Primary
            text: qsTr("Open")
            onClicked: Qt.openUrlExternally(preview.details.url)
        }
    }
}
