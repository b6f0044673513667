pragma ComponentBehavior: Bound
import QtQuick
import Sorvel.Ui

// What the scan holds by category: one bar of segments by size, and a legend of
// as many categories as fit. A click leads to the Biggest shelf, filtered.
Column {
    id: strip

    required property SpaceModel space
    property string hovered: ""
    readonly property var parts: space.composition
    readonly property var widths: parts.length > 0 && width > 0 ? space.segmentWidths(width) : []

    function colorOf(hue: real): color {
        return Qt.hsva(hue, 0.5, 0.86, 1);
    }

    spacing: 8

    Row {
        spacing: 2
        height: 10
        Repeater {
            model: strip.parts
            delegate: Rectangle {
                id: segment

                required property var modelData
                required property int index

                width: strip.widths[index] ?? 2
                height: 10
                radius: 3
                color: strip.colorOf(modelData.hue)
                opacity: strip.hovered === "" || strip.hovered === modelData.category ? 1 : 0.35
                Behavior on opacity { Movement { curve: Look.hover } }
                Accessible.role: Accessible.Button
                Accessible.name: modelData.help

                HoverHandler {
                    id: hover
                    onHoveredChanged: {
                        if (hovered)
                            strip.hovered = segment.modelData.category;
                        else if (strip.hovered === segment.modelData.category)
                            strip.hovered = "";
                    }
                }
                MouseArea {
                    objectName: "stripSegment"
                    anchors.fill: parent
                    cursorShape: Qt.PointingHandCursor
                    onClicked: strip.space.chooseCategory(segment.modelData.category, 1, true)
                    onDoubleClicked: strip.space.chooseCategory(segment.modelData.category, 2, true)
                }
                SorvelToolTip {
                    visible: hover.hovered
                    text: segment.modelData.help
                }
            }
        }
    }

    // The legend: measured in full, then cut to what fits.
    Row {
        id: measure
        visible: false
        spacing: 14
        Repeater {
            id: measures
            model: strip.parts
            delegate: Row {
                required property var modelData
                spacing: 6
                Item { width: 6; height: 6 }
                Text { text: parent.modelData.title; font.pixelSize: 12 }
            }
        }
    }
    Row {
        spacing: 14
        readonly property int fitting: {
            const widths = [];
            for (let i = 0; i < measures.count; ++i) {
                const item = measures.itemAt(i);
                widths.push(item ? item.implicitWidth : 0);
            }
            return strip.space.legendCount(widths, strip.width, 14);
        }
        Repeater {
            model: strip.parts.slice(0, parent.fitting)
            delegate: Row {
                id: legendEntry
                required property var modelData
                spacing: 6
                Accessible.role: Accessible.Button
                Accessible.name: modelData.help
                Accessible.focusable: true
                // The legend is the strip's way in for the keyboard.
                activeFocusOnTab: true
                Keys.onSpacePressed: strip.space.chooseCategory(legendEntry.modelData.category)
                Keys.onReturnPressed: strip.space.chooseCategory(legendEntry.modelData.category)
                Keys.onEnterPressed: strip.space.chooseCategory(legendEntry.modelData.category)
                Rectangle {
                    width: 6
                    height: 6
                    radius: 3
                    anchors.verticalCenter: parent.verticalCenter
                    color: strip.colorOf(legendEntry.modelData.hue)
                }
                Text {
                    text: legendEntry.modelData.title
                    font.pixelSize: 12
                    color: legendHover.hovered ? Look.ink : Look.ink2
                    // Inside the text, as the entry is a Row; it reaches back
                    // over the dot.
                    FocusRing {
                        shown: legendEntry.activeFocus
                        baseRadius: 4
                        anchors.leftMargin: -15
                    }
                    // Inside the text for the same reason, over the dot too.
                    MouseArea {
                        objectName: "legendEntry"
                        anchors.fill: parent
                        anchors.leftMargin: -12
                        cursorShape: Qt.PointingHandCursor
                        onClicked: strip.space.chooseCategory(legendEntry.modelData.category, 1, true)
                        onDoubleClicked: strip.space.chooseCategory(legendEntry.modelData.category, 2, true)
                    }
                }
                HoverHandler {
                    id: legendHover
                }
            }
        }
    }
}
