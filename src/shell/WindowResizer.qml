import QtQuick
import QtQuick.Window

// The edges of a window without a title bar of the system's: dragging one
// resizes the window through the window manager.
Item {
    id: resizer

    property Window window
    readonly property int grip: 6

    component Edge: Item {
        id: edge

        property int edges
        property int shape

        HoverHandler {
            cursorShape: edge.shape
        }
        DragHandler {
            target: null
            // The inline component uses the ids of this file, as Qt 6.4 allows; its linter
            // accepts that only under "pragma ComponentBehavior: Bound".
            onActiveChanged: if (active && resizer.enabled) resizer.window.startSystemResize(edge.edges) // qmllint disable unqualified
        }
    }

    visible: enabled

    Edge { x: resizer.grip; width: parent.width - 2 * resizer.grip; height: resizer.grip; edges: Qt.TopEdge; shape: Qt.SizeVerCursor }
    Edge { x: resizer.grip; y: parent.height - resizer.grip; width: parent.width - 2 * resizer.grip; height: resizer.grip; edges: Qt.BottomEdge; shape: Qt.SizeVerCursor }
    Edge { y: resizer.grip; width: resizer.grip; height: parent.height - 2 * resizer.grip; edges: Qt.LeftEdge; shape: Qt.SizeHorCursor }
    Edge { x: parent.width - resizer.grip; y: resizer.grip; width: resizer.grip; height: parent.height - 2 * resizer.grip; edges: Qt.RightEdge; shape: Qt.SizeHorCursor }
    Edge { width: resizer.grip; height: resizer.grip; edges: Qt.TopEdge | Qt.LeftEdge; shape: Qt.SizeFDiagCursor }
    Edge { x: parent.width - resizer.grip; width: resizer.grip; height: resizer.grip; edges: Qt.TopEdge | Qt.RightEdge; shape: Qt.SizeBDiagCursor }
    Edge { y: parent.height - resizer.grip; width: resizer.grip; height: resizer.grip; edges: Qt.BottomEdge | Qt.LeftEdge; shape: Qt.SizeBDiagCursor }
    Edge { x: parent.width - resizer.grip; y: parent.height - resizer.grip; width: resizer.grip; height: resizer.grip; edges: Qt.BottomEdge | Qt.RightEdge; shape: Qt.SizeFDiagCursor }
}
