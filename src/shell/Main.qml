import QtQuick
import QtQuick.Controls

ApplicationWindow {
    id: window

    width: 1240
    height: 800
    minimumWidth: 860
    minimumHeight: 620
    visible: true
    title: qsTr("Sorvel Cleaner")
}
