import QtQuick
import Sorvel.Ui

// A FadingScroll that is only as tall as its content, up to `maxHeight`: a
// short list takes no more room than it needs and doesn't scroll; a long one
// stops at `maxHeight` and scrolls, fading at the edges.
FadingScroll {
    id: scroll

    property real maxHeight: 320

    implicitHeight: Math.min(contentHeight, maxHeight)
    interactive: contentHeight > height
}
