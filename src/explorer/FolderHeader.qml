pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Sorvel.Ui

// Above the tiles of a scan: the way back, the breadcrumb, where this is, how
// much it holds, and what of it couldn't be read.
Item {
    id: header

    required property SpaceModel space

    // A key moved to another folder from here, and the control that had the
    // focus went: the tiles should take it.
    signal movedByKeys

    function crumbByKeys(index: int) {
        header.space.goToCrumb(index);
        header.movedByKeys();
    }

    implicitHeight: 58

    SorvelButton {
        id: back

        objectName: "backButton"
        anchors.left: parent.left
        anchors.top: parent.top
        kind: SorvelButtonStyle.Ghost
        symbol: "chevron.left"
        enabled: header.space.canGoBack
        toolTip: qsTr("Up one level (⌘↑)")
        onClicked: {
            const byKeys = back.activeFocus && FocusVisibility.keyboard;
            header.space.goBack(1, !byKeys);
            if (byKeys && !header.space.canGoBack)
                header.movedByKeys();
        }
        // The second click of a double-click, however long after the last
        // navigation: the model drops it.
        onDoubleClicked: header.space.goBack(2, true)
    }

    Flickable {
        id: crumbs

        anchors.left: back.right
        anchors.leftMargin: 6
        anchors.right: totals.left
        anchors.rightMargin: 20
        anchors.top: parent.top
        height: 30
        contentWidth: crumbRow.implicitWidth
        clip: true
        flickableDirection: Flickable.HorizontalFlick
        boundsBehavior: Flickable.StopAtBounds
        onContentWidthChanged: contentX = Math.max(0, contentWidth - width)

        Row {
            id: crumbRow

            height: parent.height
            spacing: 4
            Repeater {
                model: header.space.crumbs
                delegate: Row {
                    id: crumb

                    required property string modelData
                    required property int index
                    readonly property bool last: index === header.space.crumbs.length - 1

                    height: crumbRow.height
                    spacing: 4
                    SymbolIcon {
                        visible: crumb.index > 0
                        anchors.verticalCenter: parent.verticalCenter
                        name: "chevron.compact.right"
                        size: 11
                        color: Look.ink3
                    }
                    Text {
                        id: crumbText

                        // Every folder above this one is a stop; Space or
                        // Return goes there.
                        activeFocusOnTab: !crumb.last
                        Keys.onSpacePressed: header.crumbByKeys(crumb.index - 1)
                        Keys.onReturnPressed: header.crumbByKeys(crumb.index - 1)
                        Keys.onEnterPressed: header.crumbByKeys(crumb.index - 1)
                        onActiveFocusChanged: if (activeFocus) crumbs.contentX = Math.max(0, Math.min(crumb.x, crumbs.contentWidth - crumbs.width))
                        Accessible.focusable: !crumb.last
                        FocusRing {
                            shown: crumbText.activeFocus
                            baseRadius: 4
                        }
                        anchors.verticalCenter: parent.verticalCenter
                        text: crumb.modelData
                        font.pixelSize: crumb.last ? 17 : 14
                        font.weight: crumb.last ? Font.Bold : Font.Medium
                        color: crumb.last ? Look.ink : crumbHover.hovered ? Look.ink : Look.ink2
                        Accessible.role: Accessible.Link
                        Accessible.name: crumb.modelData
                        HoverHandler {
                            id: crumbHover
                            cursorShape: crumb.last ? Qt.ArrowCursor : Qt.PointingHandCursor
                        }
                        MouseArea {
                            objectName: "crumb"
                            anchors.fill: parent
                            enabled: !crumb.last
                            cursorShape: Qt.PointingHandCursor
                            onClicked: header.space.goToCrumb(crumb.index - 1, 1, true)
                            onDoubleClicked: header.space.goToCrumb(crumb.index - 1, 2, true)
                        }
                    }
                }
            }
        }
    }

    TextEdit {
        id: subtitle

        anchors.left: crumbs.left
        anchors.right: notice.visible ? notice.left : crumbs.right
        anchors.rightMargin: notice.visible ? 10 : 0
        anchors.top: crumbs.bottom
        anchors.topMargin: 4
        text: metrics.elidedText
        readOnly: true
        selectByMouse: true
        font.pixelSize: 12
        color: Look.ink3
        selectionColor: Look.sorvelSubtle
        TextMetrics {
            id: metrics
            text: header.space.subtitle
            font.pixelSize: 12
            elide: Text.ElideMiddle
            elideWidth: subtitle.width
        }
    }

    // "N folders couldn't be read": opens the list of them.
    Rectangle {
        id: notice

        objectName: "unreadableNotice"
        visible: header.space.unreadableNotice.length > 0
        anchors.right: crumbs.right
        anchors.verticalCenter: subtitle.verticalCenter
        width: noticeRow.implicitWidth + 16
        height: 22
        radius: 11
        color: noticeHover.hovered || unreadableList.opened ? Look.emberSubtle : "transparent"
        border.width: 1
        border.color: Look.withAlpha(Look.ember, 0.5)
        Accessible.role: Accessible.Button
        Accessible.name: header.space.unreadableNotice
        Accessible.onPressAction: unreadableList.open()

        Row {
            id: noticeRow

            anchors.centerIn: parent
            spacing: 5
            SymbolIcon {
                anchors.verticalCenter: parent.verticalCenter
                name: "lock.fill"
                size: 10
                color: Look.ember
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: header.space.unreadableNotice
                font.pixelSize: 12
                font.weight: Font.Medium
                color: Look.ink2
            }
            SymbolIcon {
                anchors.verticalCenter: parent.verticalCenter
                name: "chevron.down"
                size: 10
                color: Look.ink3
            }
        }
        HoverHandler {
            id: noticeHover
            cursorShape: Qt.PointingHandCursor
        }
        TapHandler {
            onTapped: unreadableList.opened ? unreadableList.close() : unreadableList.open()
        }
    }

    T.Popup {
        id: unreadableList

        objectName: "unreadableList"
        x: notice.x + notice.width - width
        y: notice.y + notice.height + 6
        width: Math.min(520, header.width)
        implicitHeight: Math.min(340, implicitContentHeight + topPadding + bottomPadding)
        padding: 12
        focus: true
        closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent

        background: Rectangle {
            radius: 14
            color: Look.panel
            border.width: 1
            border.color: Look.lineStrong
        }

        // The linter of Qt 6.4 counts the ids inside the delegate against deferring
        // the content item; deferring it makes no difference to this popup.
        contentItem: Column { // qmllint disable deferred-property-id
            spacing: 8
            Text {
                width: parent.width
                text: header.space.unreadableNotice
                font.pixelSize: 13
                font.weight: Font.Bold
                color: Look.ink
            }
            Text {
                width: parent.width
                text: qsTr("What couldn't be read of them isn't counted above. Scanning with more rights, or after changing their permissions, reads them.")
                wrapMode: Text.Wrap
                font.pixelSize: 12
                color: Look.ink3
            }
            // As tall as the folders need, scrolling beyond 220.
            ShrinkingScroll {
                width: parent.width
                maxHeight: 220
                fadeColor: Look.panel
                contentHeight: folderList.implicitHeight
                Column {
                    id: folderList

                    width: parent.width
                    Repeater {
                        model: header.space.unreadableFolders
                        delegate: Column {
                            id: folderRow

                            required property var modelData

                            width: folderList.width
                            bottomPadding: 6
                            Text {
                                width: parent.width
                                text: folderRow.modelData.path
                                elide: Text.ElideMiddle
                                font.pixelSize: 12
                                color: Look.ink
                            }
                            Text {
                                width: parent.width
                                text: folderRow.modelData.reason
                                elide: Text.ElideRight
                                font.pixelSize: 11
                                color: Look.ember
                            }
                        }
                    }
                }
            }
        }
    }

    Column {
        id: totals

        anchors.right: parent.right
        anchors.top: parent.top
        Text {
            anchors.right: parent.right
            text: header.space.currentSizeText
            font.pixelSize: 26
            font.weight: Font.Bold
            color: Look.ink
        }
        Text {
            anchors.right: parent.right
            text: header.space.currentFilesText
            font.pixelSize: 12
            color: Look.ink3
        }
    }
}
