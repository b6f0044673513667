pragma ComponentBehavior: Bound
import QtQuick
import Sorvel.Ui

// A removal asked for directly: what goes, what it frees, and the go.
SheetCard {
    id: sheet

    flexible: flexibleBox

    readonly property DeletionModel model: DeletionModel {}

    symbol: "humidity.fill"
    title: model.title

    Text {
        text: sheet.model.freesText
        font.pixelSize: 13
        color: Look.ink2
    }
    // In an item of its own: the fading layer of the scroll would otherwise
    // stand beside it in the card's column and count as content.
    Item {
        id: flexibleBox
        width: parent.width
        height: flexibleList.height

        FadingScroll {
            id: flexibleList
            width: parent.width
            height: Math.min(320, rows.implicitHeight, Math.max(96, sheet.room))
            contentHeight: rows.implicitHeight
            fadeColor: Look.panel
            clip: true

            Column {
                id: rows
                width: parent.width
                Repeater {
                    model: sheet.model.rows
                    Item {
                        id: row
                        required property var modelData
                        width: rows.width
                        height: 28
                        FileIconView {
                            id: icon
                            anchors.verticalCenter: parent.verticalCenter
                            path: row.modelData.path
                            size: 20
                        }
                        Text {
                            anchors.left: icon.right
                            anchors.leftMargin: 8
                            anchors.right: size.left
                            anchors.verticalCenter: parent.verticalCenter
                            text: row.modelData.name
                            elide: Text.ElideMiddle
                            font.pixelSize: 12
                            color: Look.ink
                        }
                        Text {
                            id: size
                            anchors.right: parent.right
                            anchors.verticalCenter: parent.verticalCenter
                            text: row.modelData.sizeText
                            font.pixelSize: 11
                            color: Look.ink3
                        }
                    }
                }
            }
        }
    }
    Text {
        visible: text.length > 0
        text: sheet.model.moreLine
        font.pixelSize: 12
        color: Look.ink3
    }
    Text {
        visible: sheet.model.protectedNote.length > 0
        leftPadding: 20
        text: sheet.model.protectedNote
        font.pixelSize: 12
        color: Look.ink2
        SymbolIcon {
            name: "lock.fill"
            size: 14
            color: Look.ink3
        }
    }
    Text {
        width: parent.width
        wrapMode: Text.Wrap
        text: qsTr("Sorvelised items go to the Trash, where you can still get them back. Sorvelise Forever skips the Trash and can't be undone.")
        font.pixelSize: 12
        color: Look.ink3
    }

    buttons: [
        SorvelButton {
            text: qsTr("Cancel")
            onClicked: sheet.model.cancel()
        },
        SorvelButton {
            kind: SorvelButtonStyle.Danger
            text: qsTr("Sorvelise Forever")
            onClicked: sheet.model.sorvelise(true)
        },
        SorvelButton {
            kind: SorvelButtonStyle.Primary
            symbol: "humidity.fill"
            text: qsTr("Sorvelise to Trash")
            onClicked: sheet.model.sorvelise(false)
        }
    ]

    Shortcut {
        sequences: ["Return", "Enter"]
        onActivated: sheet.model.sorvelise(false)
    }
}
