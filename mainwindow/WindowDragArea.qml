import QtQuick

// Free ground: the window is moved by it, and maximised by a double click.
Item {
    id: root

    function toggleMaximized(): void {
        const window = root.Window.window;
        if (window.visibility === Window.Maximized)
            window.showNormal();
        else
            window.showMaximized();
    }

    TapHandler {
        gesturePolicy: TapHandler.DragThreshold
        onDoubleTapped: root.toggleMaximized()
    }
    DragHandler {
        target: null
        grabPermissions: PointerHandler.CanTakeOverFromHandlersOfDifferentType | PointerHandler.ApprovesTakeOverByAnything
        onActiveChanged: {
            if (active)
                root.Window.window.startSystemMove();
        }
    }
}
