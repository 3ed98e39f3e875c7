import QtQuick

// Free ground: the window is moved by it, and maximised by a double click where that is wanted.
MouseArea {
    id: root

    // A window for which a double click means something else hears of it as of any MouseArea's.
    property bool maximizes: true

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
        if (root.maximizes)
            root.toggleMaximized();
    }
}
