pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Sorvel.Ui

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

    // The first entry takes the focus, so the arrows work at once.
    onOpened: menu.contentItem.nextItemInFocusChain(true)?.forceActiveFocus(Qt.OtherFocusReason)

    background: Rectangle {
        radius: 12
        color: Look.panel
        border.width: 1
        border.color: Look.lineStrong
    }

    // The linter of Qt 6.4 counts the ids inside the delegate against deferring
    // the content item; deferring it makes no difference to this popup.
    contentItem: Column { // qmllint disable deferred-property-id
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
                // The keyboard: Up and Down between entries, Return, Enter or Space to choose.
                activeFocusOnTab: entry.enabled
                Keys.onReturnPressed: entry.choose()
                Keys.onEnterPressed: entry.choose()
                Keys.onSpacePressed: entry.choose()
                Keys.onDownPressed: entry.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
                Keys.onUpPressed: entry.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
                Accessible.focusable: true

                FocusRing {
                    shown: entry.activeFocus
                    baseRadius: entry.radius
                    offset: -1
                }

                function choose() {
                    menu.close();
                    menu.chosen(entry.modelData.action);
                }

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
                    onTapped: entry.choose()
                }
            }
        }
    }
}
