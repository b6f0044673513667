pragma ComponentBehavior: Bound
import QtQuick
import Sorvel.Ui

// Above the tiles of a scan: the way back, the breadcrumb, where this is, and
// how much it holds.
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
                        TapHandler {
                            enabled: !crumb.last
                            onTapped: header.space.goToCrumb(crumb.index - 1)
                        }
                    }
                }
            }
        }
    }

    TextEdit {
        anchors.left: crumbs.left
        anchors.right: crumbs.right
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
            elideWidth: crumbs.width
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
