import QtQuick

// Free ground: the window is moved by it, and maximised by a double click.
MouseArea {
    id: root

    // The window system takes the pointer over for the move, and what it sends afterwards may look
    // like the old press going on: one press moves the window once.
    property bool isArmed: false
    property point grabbed: Qt.point(0, 0)

    function toggleMaximized(): void {
        const window = root.Window.window;
        if (window.visibility === Window.Maximized)
            window.showNormal();
        else
            window.showMaximized();
    }

    onPressed: event => {
        root.isArmed = true;
        root.grabbed = Qt.point(event.x, event.y);
    }
    onReleased: root.isArmed = false
    onCanceled: root.isArmed = false
    onPositionChanged: event => {
        const distance = Math.max(Math.abs(event.x - root.grabbed.x), Math.abs(event.y - root.grabbed.y));
        if (!root.isArmed || distance < Application.styleHints.startDragDistance)
            return;
        root.isArmed = false;
        root.Window.window.startSystemMove();
    }
    onDoubleClicked: {
        root.isArmed = false;
        root.toggleMaximized();
    }
}
