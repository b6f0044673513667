pragma ComponentBehavior: Bound
import QtQuick
import Sorvel.Ui

// The last look before anything is removed: everything selected in every
// area, by area, with what is kept, what is dangerous and what it frees.
SheetCard {
    id: sheet

    flexible: flexibleBox

    readonly property ReviewModel model: ReviewModel {}

    symbol: "humidity.fill"
    title: qsTr("Review before sorvelising")

    Text {
        text: sheet.model.countLine
        font: Look.caption
        color: Look.ink2
    }

    // The danger banner.
    Rectangle {
        visible: sheet.model.hasBanner
        width: parent.width
        height: visible ? banner.implicitHeight + 20 : 0
        radius: 10
        color: Look.emberSubtle
        border.width: 1
        border.color: Look.ember

        Column {
            id: banner

            x: 12
            y: 10
            width: parent.width - 24
            spacing: 5

            Row {
                spacing: 8
                SymbolIcon {
                    name: "exclamationmark.triangle.fill"
                    size: 16
                    color: Look.ember
                }
                Text {
                    text: sheet.model.bannerTitle
                    font.pixelSize: 13
                    font.weight: Font.Bold
                    color: Look.ink
                }
            }
            Repeater {
                model: sheet.model.bannerLines
                Text {
                    required property var modelData
                    width: banner.width
                    wrapMode: Text.Wrap
                    textFormat: Text.StyledText
                    text: modelData.html
                    font.pixelSize: 12
                    color: Look.ink2
                }
            }
            Text {
                visible: text.length > 0
                width: banner.width
                wrapMode: Text.Wrap
                text: sheet.model.bannerClosing
                font.pixelSize: 12
                color: Look.ink3
            }
            Row {
                spacing: 8
                SorvelCheck {
                    id: acknowledge
                    objectName: "acknowledge"
                    Accessible.name: acknowledgeText.text
                    checked: sheet.model.acknowledged
                    onClicked: sheet.model.acknowledged = !sheet.model.acknowledged
                }
                Text {
                    id: acknowledgeText
                    anchors.verticalCenter: acknowledge.verticalCenter
                    text: qsTr("I've checked these, and I have a backup of anything I might need")
                    font.pixelSize: 12
                    color: Look.ink
                    TapHandler { onTapped: sheet.model.acknowledged = !sheet.model.acknowledged }
                }
            }
        }
    }

    // The list, by area; in an item of its own, since the fading layer of the
    // scroll would otherwise stand beside it in the card's column and count as
    // content.
    Item {
        id: flexibleBox
        width: parent.width
        height: scroll.height

        FadingScroll {
            id: scroll
            width: parent.width
            height: Math.min(440, list.implicitHeight, Math.max(96, sheet.room))
            contentHeight: list.implicitHeight
            fadeColor: Look.panel
            clip: true

            Column {
                id: list

                width: parent.width
                spacing: 4

                Repeater {
                    model: sheet.model.sections

                    Column {
                        id: section

                        required property var modelData
                        width: list.width
                        spacing: 2

                        Text {
                            topPadding: 6
                            text: section.modelData.title + "  " + section.modelData.countText
                            font.pixelSize: 12
                            font.weight: Font.DemiBold
                            color: Look.ink2
                        }
                        Repeater {
                            model: section.modelData.rows

                            ReviewRow {
                                width: section.width
                                review: sheet.model
                                onFocusedControl: control => scroll.reveal(control)
                            }
                        }
                    }
                }
            }
        }
    }

    Text {
        visible: sheet.model.keptNote.length > 0
        width: parent.width
        wrapMode: Text.Wrap
        text: sheet.model.keptNote
        font.pixelSize: 12
        color: Look.ink2
        leftPadding: 22
        SymbolIcon {
            name: "lock.fill"
            size: 14
            color: Look.ink3
        }
    }
    Text {
        width: parent.width
        wrapMode: Text.Wrap
        text: qsTr("Sorvelised items go to the Trash, where you can still get them back until you empty it. Unticked items stay selected.")
        font.pixelSize: 12
        color: Look.ink3
    }
    Text {
        width: parent.width
        wrapMode: Text.Wrap
        leftPadding: 22
        text: qsTr("Sorvelise Forever skips the Trash: there is no undo and no way to get anything back.")
        font.pixelSize: 12
        color: Look.ember
        SymbolIcon {
            name: "exclamationmark.octagon.fill"
            size: 14
            color: Look.ember
        }
    }

    buttons: [
        SorvelButton {
            text: qsTr("Cancel")
            onClicked: sheet.model.cancel()
        },
        SorvelButton {
            kind: SorvelButtonStyle.Danger
            text: qsTr("Sorvelise Forever")
            toolTip: qsTr("Deletes immediately, skipping the Trash. Can't be undone.")
            enabled: sheet.model.canRemove
            onClicked: sheet.model.sorvelise(true)
        },
        SorvelButton {
            objectName: "trashButton"
            kind: SorvelButtonStyle.Primary
            symbol: "humidity.fill"
            text: sheet.model.trashTitle
            toolTip: sheet.model.trashHelp
            enabled: sheet.model.canRemove
            onClicked: sheet.model.sorvelise(false)
        }
    ]

    Shortcut {
        sequences: ["Return", "Enter"]
        enabled: sheet.model.canRemove
        onActivated: sheet.model.sorvelise(false)
    }
}
