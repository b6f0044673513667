pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Sorvel.Ui

// The row of one selectable thing in Deep Clean and on the Files shelves.
// A click selects (a folder's child waits to rule out a double click), a
// double click opens; the tick toggles at once. It drags as its item's JSON.
Item {
    id: row

    // The item in its drag form: {id, name, size, kind, heat, symbolPath, source}.
    property alias item: logic.item
    property string subtitle
    property real weight: 0
    property string badge
    property alias disabled: logic.disabled
    property bool canOpen: false
    property bool canPreview: false
    property string symbol
    // -1: no disclosure; 0 closed; 1 open.
    property int expanded: -1

    // The row the keyboard is on: drawn with a ring.
    property bool current: false
    // Off where the view labels the verdict itself.
    property bool showsRisk: true

    signal open
    signal preview
    signal disclose

    // The keyboard's Space: select or deselect at once.
    function toggle() {
        logic.toggle();
    }
    // The keyboard's Return: what a double click does.
    function activate() {
        if (canOpen)
            open();
        else if (canPreview)
            preview();
    }

    readonly property ItemRowModel model: ItemRowModel {
        id: logic
        canOpen: row.canOpen
        canPreview: row.canPreview
        onOpenRequested: row.open()
        onPreviewRequested: row.preview()
    }

    implicitHeight: 48

    Accessible.role: Accessible.ListItem
    Accessible.name: logic.name
    Accessible.description: logic.accessibleLabel
    Accessible.onPressAction: logic.toggle()

    HoverHandler {
        id: hover
    }
    // The row's handlers see every press in it, also those that the tick or a
    // button takes: a tap on one of those is theirs alone.
    function onControl(point: point): bool {
        const controls = [tick, hoverButtons, disclosure];
        for (const control of controls) {
            const local = control.mapFromItem(row, point);
            if (control.visible && control.contains(local))
                return true;
        }
        return false;
    }
    TapHandler {
        acceptedButtons: Qt.LeftButton
        onTapped: eventPoint => {
            if (!row.onControl(eventPoint.position))
                logic.click();
        }
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: {
            menu.active = true;
            (menu.item as Menu)?.popup();
        }
    }
    SorvelToolTip {
        visible: hover.hovered && !dragHandler.active
        delay: 700
        text: logic.helpText
    }

    // While a removal takes it, the row evaporates.
    EvaporateTrigger {
        anchors.fill: parent
        isVanishing: logic.vanishing
        seed: logic.seed

        Rectangle {
            anchors.fill: parent
            radius: 10
            color: hover.hovered ? Look.surface : "transparent"
            // The row's weight among its list, as a faint bar behind it.
            Rectangle {
                width: parent.width * Math.max(0, Math.min(1, row.weight))
                height: parent.height
                radius: Math.min(10, width / 2)
                color: Look.sorvelSubtle
                opacity: 0.5
            }
            FocusRing {
                shown: row.current
                baseRadius: parent.radius
                offset: -1
            }
        }
        SorvelCheck {
            id: tick
            objectName: "rowTick"
            x: 8
            anchors.verticalCenter: parent.verticalCenter
            checked: logic.selectedItself
            inherited: logic.loaded && !logic.selectedItself
            opacity: row.disabled ? 0.55 : 1
            enabled: !row.disabled
            // The row takes Space itself.
            focusPolicy: Qt.NoFocus
            Accessible.name: logic.name
            onClicked: logic.toggle(1, true)
            // The second click of a double-click: the model drops it.
            onDoubleClicked: logic.toggle(2, true)
        }
        Item {
            id: icon
            anchors.left: tick.right
            anchors.leftMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            width: 26
            height: 26
            SymbolIcon {
                visible: row.symbol.length > 0 || logic.isJunk
                anchors.centerIn: parent
                name: row.symbol.length > 0 ? row.symbol : "sparkles"
                size: 20
                color: Look.accent
            }
            FileIconView {
                visible: row.symbol.length === 0 && !logic.isJunk
                anchors.centerIn: parent
                path: logic.iconPath
                size: 26
            }
        }
        Column {
            anchors.left: icon.right
            anchors.leftMargin: 10
            anchors.right: trailing.left
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            Text {
                width: parent.width
                text: logic.name
                elide: Text.ElideMiddle
                font.pixelSize: 13
                color: Look.ink
            }
            Text {
                visible: row.subtitle.length > 0
                width: parent.width
                text: row.subtitle
                elide: Text.ElideRight
                font.pixelSize: 11
                color: Look.ink3
            }
        }
        Row {
            id: trailing
            anchors.right: parent.right
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            spacing: 8

            Row {
                id: hoverButtons
                visible: hover.hovered
                spacing: 2
                SorvelButton {
                    objectName: "rowPreview"
                    visible: row.canPreview
                    kind: SorvelButtonStyle.Ghost
                    size: SorvelButtonStyle.Small
                    symbol: "eye"
                    focusPolicy: Qt.NoFocus
                    toolTip: qsTr("Quick Look (or double-click)")
                    onClicked: row.preview()
                }
                SorvelButton {
                    visible: row.canOpen
                    kind: SorvelButtonStyle.Ghost
                    size: SorvelButtonStyle.Small
                    symbol: "chevron.right"
                    focusPolicy: Qt.NoFocus
                    toolTip: qsTr("Open folder (or double-click)")
                    onClicked: row.open()
                }
            }
            SorvelButton {
                id: disclosure
                objectName: "rowDisclosure"
                visible: row.expanded >= 0
                kind: SorvelButtonStyle.Ghost
                size: SorvelButtonStyle.Small
                symbol: row.expanded === 1 ? "chevron.down" : "chevron.right"
                text: row.expanded === 1 ? qsTr("Hide items") : ""
                toolTip: row.expanded === 1 ? qsTr("Hide what's inside") : qsTr("See exactly what would be removed")
                onClicked: row.disclose()
            }
            Badge {
                visible: row.badge.length > 0
                anchors.verticalCenter: parent.verticalCenter
                text: row.badge
            }
            Badge {
                visible: row.showsRisk && logic.safeBadge
                anchors.verticalCenter: parent.verticalCenter
                symbol: "sparkles"
                tint: Look.accent
                text: qsTr("Safe to sorvelise")
            }
            RiskBadge {
                visible: row.showsRisk && !logic.safeBadge && level !== 1 && title.length > 0
                anchors.verticalCenter: parent.verticalCenter
                level: logic.riskLevel
                title: logic.riskTitle
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: logic.sizeText
                font.pixelSize: 12
                color: Look.ink2
            }
        }
    }


    // The context menu, made on the first right click: long lists hold many rows.
    Loader {
        id: menu
        active: false
        sourceComponent: Menu {
            Repeater {
                model: logic.menu
                MenuItem {
                    required property var modelData
                    text: modelData.text
                    onTriggered: logic.trigger(modelData.action)
                }
            }
        }
    }

    // Dragging the row carries its item. The handler sits on the row itself:
    // on an item laid over the row it would take the presses of the tick and
    // the buttons.
    Drag.active: dragHandler.active
    Drag.dragType: Drag.Automatic
    Drag.supportedActions: Qt.CopyAction
    Drag.mimeData: { "application/json": logic.dragData }
    Drag.imageSource: row.chipImage?.url ?? ""
    DragHandler {
        id: dragHandler
        target: null
    }
    // Drawn once, out of sight, for the drag's picture.
    ItemChip {
        id: chip
        x: -10000
        name: logic.name
        iconPath: logic.iconPath
        isJunk: logic.isJunk
    }
    property var chipImage: ({ url: "" })
    // Grabbed on the first hover, before any drag can start: long lists create
    // rows faster than they could all be grabbed.
    Connections {
        target: hover
        function onHoveredChanged() {
            if (hover.hovered && row.chipImage.url === "")
                chip.grabToImage(result => row.chipImage = result);
        }
    }
}
