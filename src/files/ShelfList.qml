// Delegates and the list's header and footer reach the view's ids: Qt 6.4
// cannot make them as bound components (see the note below).
// qmllint disable unqualified
import QtQuick
import QtQuick.Templates as T
import Sorvel.Ui

// The rows of the Biggest or Forgotten shelf under its title, and the button
// that shows 48 more. Up and Down move between rows, Space selects, Return
// opens the preview. No "ComponentBehavior: Bound" here: Qt 6.4 then fails to
// make a list view's header and footer ("Component is not ready").
ListView {
    id: list

    required property FileShelfModel shelf

    signal preview(var details)
    // Keys for the current row.
    signal toggleCurrent
    signal activateCurrent

    model: shelf
    clip: true
    spacing: 2
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: true
    keyNavigationEnabled: true
    highlightMoveDuration: 0
    // Room to scroll the last rows clear of the selection bar.
    bottomMargin: Shell.hasSelection ? 84 : 0
    Accessible.role: Accessible.List
    Accessible.name: list.shelf.shelfTitle

    Keys.onSpacePressed: list.toggleCurrent()
    Keys.onReturnPressed: list.activateCurrent()
    Keys.onEnterPressed: list.activateCurrent()

    T.ScrollBar.vertical: SorvelScrollBar {}

    header: shelfTitle
    footer: moreButton

    Component {
        id: shelfTitle

        Shelf {
            width: list.width
            title: list.shelf.shelfTitle
            detail: list.shelf.shelfDetail

            // The list of a big scan takes a moment; the old rows stay meanwhile.
            SorvelLoader {
                visible: list.shelf.deriving
                size: 14
            }
        }
    }

    delegate: Item {
        id: cell

        required property int index
        required property var item
        required property string line
        required property real weight

        width: list.width
        height: row.implicitHeight

        ItemRow {
            id: row

            anchors.fill: parent
            item: cell.item
            subtitle: cell.line
            weight: cell.weight
            canPreview: true
            current: list.activeFocus && cell.ListView.isCurrentItem
            onPreview: list.preview(list.shelf.previewDetails(cell.index))
        }
        Connections {
            target: list
            enabled: cell.ListView.isCurrentItem
            function onToggleCurrent() {
                row.toggle();
            }
            function onActivateCurrent() {
                row.activate();
            }
        }
    }

    Component {
        id: moreButton

        Item {
            width: list.width
            height: more.visible ? 64 : 16

            SorvelButton {
                id: more

                anchors.centerIn: parent
                visible: list.shelf.moreText.length > 0
                text: list.shelf.moreText
                Accessible.name: text
                onClicked: list.shelf.showMore()
            }
        }
    }
}
