import QtQuick
import Sorvel.Ui

// Every control of the look on one page, for screenshots and for checking
// both appearances by eye.
Rectangle {
    id: gallery

    width: 1000
    height: 860
    color: Look.canvas

    component Caption: Text {
        font: Look.caption
        color: Look.ink3
    }

    Column {
        x: 32
        y: 28
        spacing: 18

        Wordmark { size: 18 }

        Caption { text: "SorvelButton: primary, secondary, ghost, danger; small, regular, large" }
        Repeater {
            model: [SorvelButtonStyle.Small, SorvelButtonStyle.Regular, SorvelButtonStyle.Large]

            delegate: Row {
                id: buttonRow

                required property int modelData

                spacing: 10
                SorvelButton { size: buttonRow.modelData; kind: SorvelButtonStyle.Primary; text: "Scan Home"; symbol: "house.fill" }
                SorvelButton { size: buttonRow.modelData; kind: SorvelButtonStyle.Secondary; text: "Choose Folder…" }
                SorvelButton { size: buttonRow.modelData; kind: SorvelButtonStyle.Ghost; text: "Clear" }
                SorvelButton { size: buttonRow.modelData; kind: SorvelButtonStyle.Danger; text: "Sorvelise Forever" }
                SorvelButton { size: buttonRow.modelData; symbol: "arrow.clockwise"; toolTip: "Rescan" }
                SorvelButton { size: buttonRow.modelData; kind: SorvelButtonStyle.Primary; text: "Disabled"; enabled: false }
            }
        }

        Row {
            spacing: 28

            Column {
                spacing: 8
                Caption { text: "SorvelSwitch" }
                SorvelSwitch { text: "Skip hidden files"; checked: true }
                SorvelSwitch { text: "Show in menu bar" }
            }
            Column {
                spacing: 8
                Caption { text: "PillPicker" }
                PillPicker { options: ["Biggest", "Forgotten", "Twins"]; currentIndex: 1 }
                PillPicker {
                    options: ["Space", "Files", "Deep Clean"]
                    symbols: ["circle.dotted.circle", "doc.on.doc", "sparkles"]
                    currentIndex: 0
                }
            }
            Column {
                spacing: 8
                Caption { text: "SearchField" }
                SearchField {}
                SearchField { text: "node_modules" }
            }
        }

        Row {
            spacing: 28

            Column {
                spacing: 8
                Caption { text: "SorvelCheck: off, selected, inherited" }
                Row {
                    spacing: 12
                    SorvelCheck {}
                    SorvelCheck { checked: true }
                    SorvelCheck { inherited: true }
                }
                Caption { text: "Badge, RiskBadge" }
                Row {
                    spacing: 6
                    Badge { text: "node_modules" }
                    RiskBadge { level: 0; title: "Cache" }
                    RiskBadge { level: 2; title: "Downloads" }
                    RiskBadge { level: 3; title: "Photos" }
                    RiskBadge { level: 4; title: "System" }
                }
            }
            Column {
                spacing: 8
                Caption { text: "MoltenBar, MoltenProgress" }
                MoltenBar { width: 160; fraction: 0.62 }
                MoltenBar { width: 160; fraction: 0.93; tint: Look.honey }
                MoltenBar { width: 160; fraction: 0.3; tint: Look.withAlpha(Look.ink, 0.32) }
                MoltenProgress { width: 160; value: 0.45 }
                Caption { text: "LiquidGauge 0.35, 0.7, 0.95; ConditionedIcon clean, stained, bloated" }
                Row {
                    spacing: 12
                    LiquidGauge { width: 28; height: 28; fraction: 0.35 }
                    LiquidGauge { width: 28; height: 28; fraction: 0.7 }
                    LiquidGauge { width: 28; height: 28; fraction: 0.95 }
                    ConditionedIcon { size: 40; path: "/tmp/"; condition: "clean" }
                    ConditionedIcon { size: 40; path: "/tmp/"; condition: "stained"; seed: 3 }
                    ConditionedIcon { size: 40; path: "/tmp/"; condition: "bloated" }
                }
            }
            Column {
                spacing: 8
                Caption { text: "Symbols, file icons" }
                Row {
                    spacing: 8
                    Repeater {
                        model: ["sparkles", "house.fill", "humidity.fill", "lock.fill", "trash", "scope", "stop.fill", "internaldrive"]
                        delegate: SymbolIcon {
                            required property string modelData
                            name: modelData
                            size: 18
                            color: Look.ink2
                        }
                    }
                }
                Row {
                    spacing: 8
                    FileIconView { path: "/usr"; size: 28 }
                    FileIconView { path: "/etc/hostname"; size: 28 }
                    FileIconView { path: "/nonexistent/picture.png"; size: 28 }
                    FileIconView { path: "/nonexistent/movie.mp4"; size: 28 }
                }
            }
        }

        Row {
            spacing: 20

            MCard {
                width: 300
                height: 180
                EmptyState {
                    anchors.fill: parent
                    symbol: "sparkles"
                    title: "Nothing to clean yet"
                    text: "Scan a folder or your whole disk."
                }
            }
            MCard {
                width: 300
                height: 180
                padding: 0
                FadingScroll {
                    anchors.fill: parent
                    fadeColor: Look.canvas
                    contentHeight: list.height
                    contentY: 60
                    Column {
                        id: list
                        x: 16
                        Repeater {
                            model: 14
                            delegate: Text {
                                required property int index
                                text: "FadingScroll row " + (index + 1)
                                height: 24
                                font.pixelSize: 13
                                color: Look.ink
                            }
                        }
                    }
                }
            }
            MCard {
                width: 260
                height: 180
                Column {
                    spacing: 6
                    Caption { text: "Palette" }
                    Grid {
                        columns: 6
                        spacing: 4
                        Repeater {
                            model: [Look.canvas, Look.surface, Look.raised, Look.well, Look.line, Look.lineStrong,
                                Look.panel, Look.ink, Look.ink2, Look.ink3, Look.accent, Look.honeyInk,
                                Look.ember, Look.sorvelSubtle, Look.emberSubtle, Look.onAccent, Look.honey, Look.magma]
                            delegate: Rectangle {
                                required property color modelData
                                width: 32
                                height: 32
                                radius: 6
                                color: modelData
                                border.width: 1
                                border.color: Look.line
                            }
                        }
                    }
                }
            }
        }

        Row {
            spacing: 24

            Column {
                spacing: 8
                Caption { text: "FlatSteamer: jetting with its SteamJet; parked at water 0.12, 0.6, 0.95" }
                Row {
                    spacing: 0

                    Item {
                        width: 250
                        height: 118

                        SteamJet {
                            anchors.fill: parent
                            from: Qt.point(jetting.x + jetting.nozzle.x, jetting.y + jetting.nozzle.y)
                            to: Qt.point(40, 104)
                            active: true
                        }
                        FlatSteamer {
                            id: jetting

                            x: 180
                            y: 48
                            waterLevel: 0.6
                            jetting: true
                        }
                    }
                    Repeater {
                        model: [0.12, 0.6, 0.95]

                        delegate: Item {
                            id: parked

                            required property real modelData

                            width: 150
                            height: 118

                            FlatSteamer {
                                x: parked.width / 2
                                y: parked.height / 2
                                waterLevel: parked.modelData
                            }
                        }
                    }
                }
            }
            Column {
                spacing: 8
                Caption { text: "SorvelLoader 9, 16, 28; SorvelLogo" }
                Row {
                    spacing: 14
                    SorvelLoader { anchors.verticalCenter: parent.verticalCenter; size: 9 }
                    SorvelLoader { anchors.verticalCenter: parent.verticalCenter; size: 16 }
                    SorvelLoader { anchors.verticalCenter: parent.verticalCenter; size: 28 }
                    SorvelLogo { anchors.verticalCenter: parent.verticalCenter; size: 22 }
                    SorvelLogo { anchors.verticalCenter: parent.verticalCenter; size: 56 }
                }
            }
        }
    }
}
