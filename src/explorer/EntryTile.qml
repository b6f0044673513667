import QtQuick
import Sorvel.Ui

// One tile of the Space explorer, as an icon tile or a list row. It shows what
// the model's row says and hands every click, hover and key to the model.
Item {
    id: tile

    required property int index
    required property string tileId
    required property string name
    required property bool isPlaceholder
    required property string iconPath
    required property string condition
    required property int seed
    required property string sizeText
    required property string kindLine
    required property string help
    required property var helpSymbols
    required property bool isDirectory
    required property bool measuring
    required property bool canOpen
    required property bool canPreview
    required property bool includes
    required property bool inherited
    required property bool locked
    required property string riskLevel
    required property string riskTitle
    required property string riskHelp
    required property string artifactKind
    required property real weight
    required property bool waiting
    required property real barFactor
    required property string selectAction
    required property bool vanishing
    required property string accessibleName
    required property bool unreadable
    required property int unreadableCount

    required property SpaceModel space
    property bool listLayout: false
    // Tiles to a line, for the Up and Down keys.
    property int columns: 1
    readonly property bool hovering: pointer.containsMouse
    readonly property bool stained: condition === "stained"
    readonly property bool bloated: condition === "bloated"

    // The view sets the width of its tiles.
    width: 140
    height: listLayout ? 48 : 132

    Accessible.role: Accessible.Button
    Accessible.name: accessibleName
    Accessible.description: canOpen ? qsTr("Opens the folder.") : qsTr("Shows a preview.")
    Accessible.ignored: isPlaceholder
    Accessible.focusable: !isPlaceholder
    Accessible.checkable: !isPlaceholder && !locked
    Accessible.checked: includes

    // One tile of the grid is a stop of the Tab chain: the focused one, or the
    // first. The keys move the focus between tiles (see TileKeys).
    // (Qt refuses to take a focused item out of the chain: it stays in until
    // the focus has moved on.)
    activeFocusOnTab: !tile.isPlaceholder && (tile.activeFocus || tile.index === Math.max(0, tile.space.focusRow))
    onActiveFocusChanged: if (tile.activeFocus) tile.space.focusTile(tile.index)
    Keys.onPressed: event => {
        // The menu key (or Shift+F10) opens the tile's menu in its middle.
        if (!tile.isPlaceholder && (event.key === Qt.Key_Menu
                                    || (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier))) {
            tile.openMenu(tile.width / 2, tile.height / 2);
            event.accepted = true;
            return;
        }
        event.accepted = !tile.isPlaceholder
                && tile.space.keyPress(tile.index, event.key, event.modifiers, tile.columns);
    }

    // The components below use the ids of this file, as Qt 6.4 allows; its linter
    // accepts that only under "pragma ComponentBehavior: Bound", with which 6.4
    // refuses the components a Loader or a view creates.
    // qmllint disable unqualified
    component SizeLine: Row {
        spacing: 4
        // Made only while the size is measured, as are the placeholder's
        // bars below: most tiles never show either.
        Loader {
            active: tile.measuring
            visible: active
            anchors.verticalCenter: parent.verticalCenter
            sourceComponent: SorvelLoader {
                size: 9
            }
        }
        SymbolIcon {
            visible: !tile.measuring && tile.stained
            name: "sparkles"
            size: 9
            color: Look.accent
            anchors.verticalCenter: parent.verticalCenter
        }
        Text {
            text: tile.sizeText
            font.pixelSize: 11
            color: tile.unreadable ? Look.ember : Look.ink3
        }
        // Folders inside that couldn't be read, counted.
        SymbolIcon {
            visible: tile.unreadableCount > 0 && !tile.unreadable
            name: "lock.fill"
            size: 9
            color: Look.ember
            anchors.verticalCenter: parent.verticalCenter
        }
        Text {
            visible: tile.unreadableCount > 0 && !tile.unreadable
            text: "" + tile.unreadableCount
            font.pixelSize: 11
            color: Look.ember
        }
    }

    component Bar: Rectangle {
        height: 8
        radius: 4
        color: Look.line
        opacity: tile.waiting ? 0.6 + 0.4 * pulse.value : 1
    }
    // qmllint enable unqualified

    QtObject {
        id: pulse
        property real value
        SequentialAnimation on value {
            running: tile.waiting && tile.isPlaceholder && !Look.reducedMotion
            loops: Animation.Infinite
            NumberAnimation { to: 1; duration: 900; easing.type: Easing.InOutSine }
            NumberAnimation { to: 0; duration: 900; easing.type: Easing.InOutSine }
        }
    }

    // While a removal takes it, the tile evaporates.
    EvaporateTrigger {
        anchors.fill: parent
        isVanishing: tile.vanishing
        tileSeed: tile.seed

        Rectangle {
            id: back

            anchors.fill: parent
            radius: tile.listLayout ? 14 : 26
            color: tile.includes ? Look.sorvelSubtle : tile.hovering ? Look.glass : "transparent"
            border.width: tile.includes ? 1 : 0
            border.color: Look.withAlpha(Look.accent, 0.6)
            Behavior on color { ColorMovement { curve: Look.standard(180) } }

            FocusRing {
                shown: tile.activeFocus
                baseRadius: back.radius
                offset: -1
            }

            Rectangle {
                visible: tile.includes
                x: 0
                anchors.verticalCenter: parent.verticalCenter
                width: 3
                height: 22
                radius: 1.5
                color: Look.accent
            }
        }

        // Only the layout in use is made: a tile of the grid has no list row
        // behind it, nor its icon.
        Loader {
            anchors.fill: parent
            anchors.leftMargin: tile.listLayout ? 12 : 0
            anchors.rightMargin: tile.listLayout ? 12 : 0
            sourceComponent: tile.listLayout ? listRow : iconTile
        }
    }

    // As SizeLine and Bar above, components that use the ids of this file.
    // qmllint disable unqualified

    // -- Icons -------------------------------------------------------------------
    Component {
        id: iconTile

        Item {
            ConditionedIcon {
                y: 12
                anchors.horizontalCenter: parent.horizontalCenter
                path: tile.iconPath
                condition: tile.condition
                seed: tile.seed
                dim: tile.isPlaceholder && tile.waiting
                unreadable: tile.unreadable
            }
            Column {
                visible: !tile.isPlaceholder
                y: 84
                width: parent.width - 16
                anchors.horizontalCenter: parent.horizontalCenter
                spacing: 2
                Text {
                    width: parent.width
                    horizontalAlignment: Text.AlignHCenter
                    text: tile.name
                    elide: Text.ElideMiddle
                    font.pixelSize: 12
                    font.weight: Font.Medium
                    color: Look.ink
                }
                SizeLine {
                    anchors.horizontalCenter: parent.horizontalCenter
                }
            }
            Loader {
                active: tile.isPlaceholder
                y: 90
                anchors.horizontalCenter: parent.horizontalCenter
                sourceComponent: Column {
                    spacing: 6
                    Bar {
                        width: 80 * tile.barFactor
                        anchors.horizontalCenter: parent.horizontalCenter
                    }
                    Bar {
                        width: 34
                        height: 6
                        anchors.horizontalCenter: parent.horizontalCenter
                    }
                }
            }
            Loader {
                active: !tile.isPlaceholder
                x: parent.width - width - 10
                y: 10
                sourceComponent: tile.locked ? lockMark : selectCircle
            }
            RiskMark {
                visible: !tile.isPlaceholder && (tile.riskLevel === "caution" || tile.riskLevel === "danger")
                x: 12
                y: 11
                level: tile.riskLevel
                help: tile.riskHelp
            }
        }
    }

    // -- List --------------------------------------------------------------------
    Component {
        id: listRow

        Item {
            Loader {
                id: listMark
                active: !tile.isPlaceholder
                width: 20
                anchors.verticalCenter: parent.verticalCenter
                sourceComponent: tile.locked ? lockMark : selectCircle
            }
            ConditionedIcon {
                id: listIcon
                x: 30
                size: 28
                anchors.verticalCenter: parent.verticalCenter
                path: tile.iconPath
                condition: tile.condition
                seed: tile.seed
                dim: tile.isPlaceholder && tile.waiting
                unreadable: tile.unreadable
            }
            Column {
                anchors.left: listIcon.right
                anchors.leftMargin: 10
                anchors.right: listBar.left
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                spacing: 2
                visible: !tile.isPlaceholder
                Row {
                    spacing: 6
                    width: parent.width
                    Text {
                        width: Math.min(implicitWidth, parent.width - 120)
                        text: tile.name
                        elide: Text.ElideMiddle
                        font.pixelSize: 13
                        font.weight: Font.Medium
                        color: Look.ink
                    }
                    RiskBadge {
                        visible: tile.artifactKind.length === 0 && tile.riskTitle.length > 0
                                 && tile.riskLevel !== "normal"
                        anchors.verticalCenter: parent.verticalCenter
                        level: ({ safe: 0, normal: 1, caution: 2, danger: 3, locked: 4 })[tile.riskLevel] ?? -1
                        title: tile.riskTitle
                    }
                    Badge {
                        visible: tile.artifactKind.length > 0
                        anchors.verticalCenter: parent.verticalCenter
                        text: tile.artifactKind
                        tint: Look.accent
                    }
                }
                Text {
                    width: parent.width
                    text: tile.kindLine
                    elide: Text.ElideRight
                    font.pixelSize: 11
                    color: Look.ink3
                }
            }
            Loader {
                active: tile.isPlaceholder
                anchors.left: listIcon.right
                anchors.leftMargin: 10
                anchors.verticalCenter: parent.verticalCenter
                sourceComponent: Column {
                    spacing: 6
                    Bar { width: 220 * tile.barFactor }
                    Bar { width: 70; height: 6 }
                }
            }
            MoltenBar {
                id: listBar
                visible: !tile.isPlaceholder
                anchors.right: sizeColumn.left
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                width: 110
                fraction: tile.weight
                tint: tile.bloated ? Look.honey : Look.withAlpha(Look.ink2, 0.45)
            }
            SizeLine {
                id: sizeColumn
                visible: !tile.isPlaceholder
                anchors.right: chevron.left
                anchors.rightMargin: 8
                anchors.verticalCenter: parent.verticalCenter
                width: 80
                layoutDirection: Qt.RightToLeft
            }
            SymbolIcon {
                id: chevron
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                name: "chevron.right"
                size: 12
                color: Look.ink3
                opacity: tile.canOpen ? 1 : 0
            }
        }
    }

    Component {
        id: selectCircle
        SelectCircle {
            isOn: tile.includes
            inherited: tile.inherited
            hovering: tile.hovering
            size: 20
            enabled: !tile.measuring
            onClicked: tile.space.toggle(tile.index, 1, true)
            onDoubleClicked: tile.space.toggle(tile.index, 2, true)
        }
    }
    // qmllint enable unqualified
    Component {
        id: lockMark
        LockMark {}
    }

    MouseArea {
        id: pointer

        anchors.fill: parent
        z: -1
        enabled: !tile.isPlaceholder
        hoverEnabled: true
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        cursorShape: tile.canOpen ? Qt.PointingHandCursor : Qt.ArrowCursor
        onContainsMouseChanged: tile.space.hover(tile.index, containsMouse)
        onClicked: mouse => {
            if (mouse.button === Qt.RightButton) {
                tile.openMenu(mouse.x, mouse.y);
                return;
            }
            tile.forceActiveFocus();
            tile.space.tap(tile.index, mouse.modifiers, 1, true);
        }
        // The second click of a double-click: the model drops it.
        onDoubleClicked: mouse => tile.space.tap(tile.index, mouse.modifiers, 2, true)
    }

    // The help and the menu are made the first time they are wanted, and
    // kept: most tiles never show either.
    function openMenu(px: real, py: real) {
        menuHolder.active = true;
        (menuHolder.item as TileMenu).popupAt(px, py);
    }
    readonly property bool menuShown: menuHolder.item?.visible ?? false

    // As SizeLine and Bar above, the component uses the ids of this file.
    // qmllint disable unqualified
    Loader {
        id: helpHolder

        readonly property bool wanted: tile.hovering && !tile.isPlaceholder && !tile.menuShown

        anchors.fill: parent
        active: false
        onWantedChanged: if (wanted) active = true
        sourceComponent: Item {
            SorvelToolTip {
                visible: helpHolder.status === Loader.Ready && helpHolder.wanted
                text: tile.help
                symbols: tile.helpSymbols
                delay: 900
            }
        }
    }
    // qmllint enable unqualified

    // As SizeLine and Bar above, the component uses the ids of this file.
    // qmllint disable unqualified
    Loader {
        id: menuHolder

        active: false
        sourceComponent: TileMenu {
            entries: {
                const list = [{ text: tile.selectAction, action: "toggle" }];
                if (tile.canOpen)
                    list.push({ text: qsTr("Open"), action: "open" });
                if (tile.canPreview)
                    list.push({ text: qsTr("Quick Look"), action: "preview" });
                list.push({ text: qsTr("Show in Finder"), action: "reveal" });
                list.push({ text: qsTr("Copy Path"), action: "copy" });
                return list;
            }
            onChosen: action => {
                switch (action) {
                case "toggle":
                    tile.space.toggle(tile.index, 1, false);
                    break;
                case "open":
                    tile.space.tap(tile.index, 0, 1, false);
                    break;
                case "preview":
                    tile.space.preview(tile.index);
                    break;
                case "reveal":
                    tile.space.reveal(tile.index);
                    break;
                case "copy":
                    tile.space.copyPath(tile.index);
                    break;
                }
            }
        }
    }
    // qmllint enable unqualified

    Accessible.onPressAction: tile.space.tap(tile.index, 0, 1, false)
    Accessible.onToggleAction: tile.space.toggle(tile.index, 1, false)
}
