import QtQuick
import QtQuick.Templates as T
import Sorvel.Ui

// A one-line search field with a magnifier and a clear button. Escape clears.
T.TextField {
    id: control

    implicitWidth: 220
    implicitHeight: 30
    leftPadding: 30
    rightPadding: text.length > 0 ? 28 : 12
    verticalAlignment: TextInput.AlignVCenter
    font.pixelSize: 13
    color: Look.ink
    selectionColor: Look.sorvelSubtle
    selectedTextColor: Look.ink
    placeholderText: qsTr("Search")
    placeholderTextColor: Look.ink3
    hoverEnabled: true
    selectByMouse: true

    Accessible.name: placeholderText

    Keys.onEscapePressed: event => {
        if (text.length > 0) {
            clear();
            event.accepted = true;
        } else {
            event.accepted = false;
        }
    }

    background: Rectangle {
        radius: height / 2
        color: Look.well
        border.width: 1
        border.color: control.activeFocus ? Look.accent : control.hovered ? Look.lineStrong : Look.line

        FocusRing {
            shown: control.activeFocus
            baseRadius: parent.radius
        }
        SymbolIcon {
            x: 10
            anchors.verticalCenter: parent.verticalCenter
            name: "magnifyingglass"
            size: 14
            color: Look.ink3
        }
    }

    Text {
        x: control.leftPadding
        width: control.width - control.leftPadding - control.rightPadding
        anchors.verticalCenter: parent.verticalCenter
        visible: control.text.length === 0 && control.preeditText.length === 0
        text: control.placeholderText
        font: control.font
        color: control.placeholderTextColor
        elide: Text.ElideRight
    }

    SymbolIcon {
        x: control.width - width - 9
        anchors.verticalCenter: parent.verticalCenter
        visible: control.text.length > 0
        name: "xmark.circle.fill"
        size: 14
        color: clearHover.hovered ? Look.ink : Look.ink3

        Accessible.role: Accessible.Button
        Accessible.name: qsTr("Clear")

        HoverHandler {
            id: clearHover
        }
        TapHandler {
            onTapped: control.clear()
        }
    }
}
