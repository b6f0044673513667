import QtQuick
import QtQuick.Window
import Sorvel.Ui

// The About window: the application's name and version, its licence and what
// it is built with. Close has the keyboard focus when it opens; Escape or the
// close shortcut shut it.
Window {
    id: aboutWindow

    // Shows the window, or brings the open one to the front.
    function present() {
        visible = true;
        raise();
        requestActivate();
        closeButton.forceActiveFocus();
    }

    width: 440
    // Tall enough for every credit above the Close button.
    height: Math.max(500, content.y + content.implicitHeight + closeButton.implicitHeight + 56)
    minimumWidth: 360
    minimumHeight: 440
    title: qsTr("About Sorvel Cleaner")
    color: Look.canvas

    AboutModel {
        id: about
    }

    Shortcut {
        // The linter of Qt 6.4 finds no enumeration on the StandardKey value type.
        sequences: [StandardKey.Cancel, StandardKey.Close] // qmllint disable unqualified
        onActivated: aboutWindow.close()
    }

    Column {
        id: content

        x: 32
        y: 32
        width: aboutWindow.width - 64
        spacing: 6

        Wordmark {
            anchors.horizontalCenter: parent.horizontalCenter
            size: 26
            showName: false
        }
        Item {
            width: 1
            height: 8
        }
        Text {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: about.name
            font.pixelSize: 22
            font.weight: Font.DemiBold
            color: Look.ink
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Text {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: about.versionText
            font.pixelSize: 13
            color: Look.ink2
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Text {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            text: about.licenceText
            font.pixelSize: 12
            color: Look.ink3
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Item {
            width: 1
            height: 14
        }
        Text {
            text: qsTr("Built with")
            font.pixelSize: 12
            font.weight: Font.DemiBold
            color: Look.ink2
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        MCard {
            width: content.width
            padding: 0

            Column {
                width: parent.width

                Repeater {
                    model: about.credits

                    delegate: Item {
                        id: creditRow

                        required property var modelData
                        required property int index

                        width: parent ? parent.width : 0
                        implicitHeight: creditTexts.implicitHeight + 20
                        height: implicitHeight

                        Accessible.role: Accessible.StaticText
                        Accessible.name: creditRow.modelData.title + ". " + creditRow.modelData.detail

                        Rectangle {
                            x: 14
                            width: creditRow.width - 28
                            height: 1
                            visible: creditRow.index > 0
                            color: Look.line
                        }
                        Column {
                            id: creditTexts

                            x: 14
                            anchors.verticalCenter: parent.verticalCenter
                            width: creditRow.width - 28
                            spacing: 2

                            Text {
                                width: parent.width
                                text: creditRow.modelData.title
                                font.pixelSize: 13
                                font.weight: Font.DemiBold
                                color: Look.ink
                            }
                            Text {
                                width: parent.width
                                text: creditRow.modelData.detail
                                wrapMode: Text.Wrap
                                font.pixelSize: 12
                                color: Look.ink3
                            }
                        }
                    }
                }
            }
        }
    }

    SorvelButton {
        id: closeButton

        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: 24
        kind: SorvelButtonStyle.Primary
        text: qsTr("Close")
        focus: true
        focusPolicy: Qt.StrongFocus
        Accessible.role: Accessible.Button
        onClicked: aboutWindow.close()
    }
}
