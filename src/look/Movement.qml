import QtQuick
import Sorvel.Ui

// A NumberAnimation on one of the look's timing curves. Under reduced motion
// it applies at once, unless the movement is marked essential.
//     Behavior on x { Movement { curve: Look.indicator } }
NumberAnimation {
    // [duration in ms, x1, y1, x2, y2], as Look hands them out.
    property var curve: Look.hover
    property bool essential: false

    duration: Look.reducedMotion && !essential ? 0 : curve[0]
    easing.type: Easing.BezierSpline
    easing.bezierCurve: [curve[1], curve[2], curve[3], curve[4], 1, 1]
}
