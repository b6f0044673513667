import QtQuick
import Sorvel.Ui

// The desktop's icon for a path, given in its lossless text form.
Image {
    property string path
    property real size: 28

    width: size
    height: size
    sourceSize: Qt.size(Math.ceil(size * 2), Math.ceil(size * 2))
    source: path.length > 0 ? Look.fileIcon(path) : ""
    fillMode: Image.PreserveAspectFit
    smooth: true
    mipmap: true
    cache: true
}
