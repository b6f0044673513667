import QtQuick
import Sorvel.Ui

// A symbol by its name ("sparkles", "house.fill"), drawn in one colour.
Image {
    id: icon

    property string name
    property color color: Look.ink
    property real size: 16

    width: size
    height: size
    // Rendered at twice the size, sharp on high-density screens too.
    // Qt.size makes a QSizeF, which the engine turns into the QSize this takes;
    // the linter of Qt 6.4 does not know that conversion.
    sourceSize: Qt.size(Math.ceil(size * 2), Math.ceil(size * 2)) // qmllint disable type
    source: name.length > 0 ? Look.symbol(name, color) : ""
    fillMode: Image.PreserveAspectFit
    smooth: true
    mipmap: true
}
