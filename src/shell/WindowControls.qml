import QtQuick
import QtQuick.Window
import Sorvel.Ui

// Minimise, maximise and close, for a window that draws its own title bar.
Row {
    id: controls

    property Window window

    spacing: 4

    component WindowButton: SorvelButton {
        kind: SorvelButtonStyle.Ghost
        size: SorvelButtonStyle.Small
    }

    WindowButton {
        symbol: "minus"
        toolTip: qsTr("Minimise")
        onClicked: controls.window.showMinimized()
    }
    WindowButton {
        symbol: controls.window && controls.window.visibility === Window.Maximized ? "square.on.square" : "square"
        toolTip: controls.window && controls.window.visibility === Window.Maximized ? qsTr("Restore") : qsTr("Maximise")
        onClicked: controls.window.visibility === Window.Maximized ? controls.window.showNormal()
                                                                      : controls.window.showMaximized()
    }
    WindowButton {
        symbol: "xmark"
        toolTip: qsTr("Close")
        onClicked: controls.window.close()
    }
}
