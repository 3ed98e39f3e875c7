pragma ComponentBehavior: Bound

import QtQuick
import Plim.Shell

// A frameless window is resized by its edges and corners all the same.
Item {
    id: root

    component Edge: MouseArea {
        id: edge

        required property int edges

        // The window system takes the pointer over, and nothing more is heard of the press.
        onPressed: {
            root.resizeStarted();
            edge.Window.window.startSystemResize(edge.edges);
        }
    }

    readonly property int reach: Theme.resizeEdge
    readonly property int corner: 2 * Theme.resizeEdge

    // The user has taken hold of an edge; told before the window system has.
    signal resizeStarted()

    Edge {
        objectName: "resize.top"
        edges: Qt.TopEdge
        cursorShape: Qt.SizeVerCursor
        width: parent.width
        height: root.reach
    }
    Edge {
        objectName: "resize.bottom"
        edges: Qt.BottomEdge
        cursorShape: Qt.SizeVerCursor
        y: parent.height - height
        width: parent.width
        height: root.reach
    }
    Edge {
        objectName: "resize.left"
        edges: Qt.LeftEdge
        cursorShape: Qt.SizeHorCursor
        width: root.reach
        height: parent.height
    }
    Edge {
        objectName: "resize.right"
        edges: Qt.RightEdge
        cursorShape: Qt.SizeHorCursor
        x: parent.width - width
        width: root.reach
        height: parent.height
    }
    Edge {
        objectName: "resize.topLeft"
        edges: Qt.TopEdge | Qt.LeftEdge
        cursorShape: Qt.SizeFDiagCursor
        width: root.corner
        height: root.corner
    }
    Edge {
        objectName: "resize.topRight"
        edges: Qt.TopEdge | Qt.RightEdge
        cursorShape: Qt.SizeBDiagCursor
        x: parent.width - width
        width: root.corner
        height: root.corner
    }
    Edge {
        objectName: "resize.bottomLeft"
        edges: Qt.BottomEdge | Qt.LeftEdge
        cursorShape: Qt.SizeBDiagCursor
        y: parent.height - height
        width: root.corner
        height: root.corner
    }
    Edge {
        objectName: "resize.bottomRight"
        edges: Qt.BottomEdge | Qt.RightEdge
        cursorShape: Qt.SizeFDiagCursor
        x: parent.width - width
        y: parent.height - height
        width: root.corner
        height: root.corner
    }
}
