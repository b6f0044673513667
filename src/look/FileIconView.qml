import QtQuick
import Sorvel.Ui

// The desktop's icon for a path, given in its lossless text form.
Image {
    property string path
    property real size: 28

    width: size
    height: size
    // Rendered at twice the size, sharp on high-density screens too.
    // Qt.size makes a QSizeF, which the engine turns into the QSize this takes;
    // the linter of Qt 6.4 does not know that conversion.
    sourceSize: Qt.size(Math.ceil(size * 2), Math.ceil(size * 2)) // qmllint disable type
    source: path.length > 0 ? Look.fileIcon(path) : ""
    fillMode: Image.PreserveAspectFit
    smooth: true
    mipmap: true
    cache: true
}
