pragma ComponentBehavior: Bound
import QtQuick
import Sorvel.Ui

// A row of pills of which one is on, with a highlight that slides between
// them. `options` are the titles; `symbols`, if given, one symbol per title.
// A click emits activated(index, clickCount), a key activated(index, 1); the
// owner sets currentIndex, and drops what a double-click repeats.
Rectangle {
    id: picker

    property var options: []
    property var symbols: []
    // Help texts, one per pill, if given.
    property var toolTips: []
    property int currentIndex: 0
    property bool compact: false
    // What a screen reader calls the whole row; the current pill by default.
    property string accessibleName: String(options[currentIndex] ?? "")

    signal activated(int index, int clickCount)

    implicitWidth: pills.implicitWidth + 6
    implicitHeight: 30
    radius: height / 2
    color: Look.well
    border.width: 1
    border.color: Look.line
    activeFocusOnTab: true

    Accessible.role: Accessible.PageTabList
    Accessible.name: accessibleName
    Accessible.focusable: true

    // With the keyboard: the arrows move to the neighbouring pill.
    Keys.onLeftPressed: if (currentIndex > 0) activated(currentIndex - 1, 1)
    Keys.onRightPressed: if (currentIndex < options.length - 1) activated(currentIndex + 1, 1)

    FocusRing {
        shown: picker.activeFocus
        baseRadius: picker.radius
    }

    Rectangle {
        id: highlight

        readonly property Item target: pills.children[picker.currentIndex] ?? null

        visible: target !== null
        x: 3 + (target ? target.x : 0)
        y: 3
        width: target ? target.width : 0
        height: parent.height - 6
        radius: height / 2
        color: Look.raised
        border.width: 1
        border.color: Look.lineStrong

        Behavior on x { Movement { curve: Look.indicator } }
        Behavior on width { Movement { curve: Look.indicator } }
    }

    Row {
        id: pills

        x: 3
        y: 3
        height: parent.height - 6

        Repeater {
            model: picker.options

            delegate: Item {
                id: pill

                required property int index
                required property var modelData
                readonly property bool current: index === picker.currentIndex
                readonly property string symbol: picker.symbols[index] ?? ""

                implicitWidth: content.implicitWidth + (picker.compact ? 16 : 24)
                height: pills.height

                Accessible.role: Accessible.RadioButton
                Accessible.name: String(modelData)
                Accessible.checked: current

                Row {
                    id: content

                    anchors.centerIn: parent
                    spacing: 6

                    SymbolIcon {
                        anchors.verticalCenter: parent.verticalCenter
                        visible: pill.symbol.length > 0
                        name: pill.symbol
                        size: 14
                        color: pill.current ? Look.ink : Look.ink2
                    }
                    Text {
                        anchors.verticalCenter: parent.verticalCenter
                        visible: !picker.compact || pill.symbol.length === 0
                        text: String(pill.modelData)
                        font.pixelSize: 12
                        font.weight: pill.current ? Font.DemiBold : Font.Medium
                        color: pill.current ? Look.ink : hover.hovered ? Look.ink : Look.ink2
                    }
                }

                HoverHandler {
                    id: hover
                }
                SorvelToolTip {
                    visible: hover.hovered && text.length > 0
                    text: picker.toolTips[pill.index] ?? ""
                }
                MouseArea {
                    objectName: "pill"
                    anchors.fill: parent
                    onClicked: picker.activated(pill.index, 1)
                    onDoubleClicked: picker.activated(pill.index, 2)
                }
            }
        }
    }
}
