import QtQuick
import Sorvel.Ui

// Holds the place of an area's view until that view is built.
Item {
    id: placeholder

    property string symbol
    property string title
    property string text

    EmptyState {
        anchors.fill: parent
        symbol: placeholder.symbol
        title: placeholder.title
        text: placeholder.text
    }
}
