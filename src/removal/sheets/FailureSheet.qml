pragma ComponentBehavior: Bound
import QtQuick
import Sorvel.Ui

// What stayed behind after a removal, grouped by why.
SheetCard {
    id: sheet

    flexible: flexibleBox

    readonly property FailureModel model: FailureModel {}

    symbol: "exclamationmark.triangle.fill"
    symbolColor: Look.honeyInk
    title: model.heading

    Text {
        text: qsTr("Everything else was sorvelised.")
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
            height: Math.min(420, groups.implicitHeight, Math.max(96, sheet.room))
            contentHeight: groups.implicitHeight
            fadeColor: Look.panel
            clip: true

            Column {
                id: groups
                width: parent.width
                spacing: 12

                Repeater {
                    model: sheet.model.groups

                    Column {
                        id: group
                        required property var modelData
                        required property int index
                        width: groups.width
                        spacing: 4

                        Item {
                            width: group.width
                            height: copyButton.height
                            Text {
                                anchors.verticalCenter: parent.verticalCenter
                                text: group.modelData.title + "  " + group.modelData.countText
                                font.pixelSize: 13
                                font.weight: Font.DemiBold
                                color: Look.ink
                            }
                            SorvelButton {
                                id: copyButton
                                anchors.right: parent.right
                                kind: SorvelButtonStyle.Ghost
                                size: SorvelButtonStyle.Small
                                symbol: "doc.on.doc"
                                text: qsTr("Copy paths")
                                onClicked: sheet.model.copyGroup(group.index)
                            }
                        }
                        Text {
                            width: group.width
                            wrapMode: Text.Wrap
                            text: group.modelData.explanation
                            font.pixelSize: 12
                            color: Look.ink3
                        }
                        Repeater {
                            model: group.modelData.rows
                            FailureRow {
                                width: group.width
                            }
                        }
                        Text {
                            visible: text.length > 0
                            text: group.modelData.more
                            font.pixelSize: 12
                            color: Look.ink3
                        }
                    }
                }
            }
        }
    }

    buttons: [
        SorvelButton {
            text: qsTr("Copy All Paths")
            onClicked: sheet.model.copyAll()
        },
        SorvelButton {
            visible: sheet.model.showsFullDiskAccess
            text: qsTr("Full Disk Access…")
            onClicked: sheet.model.openFullDiskAccess()
        },
        SorvelButton {
            kind: SorvelButtonStyle.Primary
            text: qsTr("OK")
            onClicked: sheet.model.done()
        }
    ]

    Shortcut {
        sequences: ["Return", "Enter"]
        onActivated: sheet.model.done()
    }
}
