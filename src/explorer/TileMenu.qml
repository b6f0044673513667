pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Sorvel.Ui

// The linter of Qt 6.4 knows neither the model's base class, MouseArea's properties,
// Qt's cursor and button enumerations nor grouped easing; this file is checked
// by running it instead.
// qmllint disable

// The context menu of a tile: a list of {text, action}; choosing one emits
// chosen(action).
T.Popup {
    id: menu

    property var entries: []
    signal chosen(string action)

    // Opens with its corner at (px, py) of the parent.
    function popupAt(px: real, py: real) {
        x = px;
        y = py;
        open();
    }

    implicitWidth: 220
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    padding: 6
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside

    background: Rectangle {
        radius: 12
        color: Look.panel
        border.width: 1
        border.color: Look.lineStrong
    }

    contentItem: Column {
        Repeater {
            model: menu.entries
            delegate: Rectangle {
                id: entry

                required property var modelData

                width: menu.availableWidth
                height: 28
                radius: 7
                color: hover.hovered ? Look.sorvelSubtle : "transparent"
                Accessible.role: Accessible.MenuItem
                Accessible.name: modelData.text

                Text {
                    x: 10
                    anchors.verticalCenter: parent.verticalCenter
                    text: entry.modelData.text
                    font.pixelSize: 13
                    color: Look.ink
                }
                HoverHandler {
                    id: hover
                }
                TapHandler {
                    onTapped: {
                        menu.close();
                        menu.chosen(entry.modelData.action);
                    }
                }
            }
        }
    }
}
