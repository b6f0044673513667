import QtQuick
import QtQuick.Controls
import Sorvel.Ui

ApplicationWindow {
    id: window

    width: 1240
    height: 800
    minimumWidth: 860
    minimumHeight: 620
    visible: true
    title: qsTr("Sorvel Cleaner")
    color: Look.canvas
    flags: Shell.customTitleBar ? Qt.Window | Qt.FramelessWindowHint : Qt.Window
    background: SorvelBackdrop {}

    RootView {
        id: root

        anchors.fill: parent
        window: window
        customTitleBar: Shell.customTitleBar
    }

    WindowResizer {
        anchors.fill: parent
        enabled: Shell.customTitleBar && window.visibility === Window.Windowed
        window: window
    }
}
