import QtQuick
import Plim.Shell

// A small window that belongs to a control. It is a window of its own, so that it may reach over the
// edge of the one that it belongs to; Esc, or turning to anything else, closes it.
Window {
    id: root

    required property Item anchor
    required property size contentSize
    default property alias content: surface.data
    property bool isOpen: false
    /// The press that closed it may be one on the control that opens it: that is not to open it again.
    readonly property bool justClosed: rest.running

    signal closed()

    // Place and size at once: told one by one, a window system may mix an old place with a new size.
    function place(): void {
        AnchoredPlacement.putBelow(root, root.anchor, root.contentSize);
    }
    function open(): void {
        root.transientParent = root.anchor.Window.window;
        root.place();
        root.visible = true;
        root.requestActivate();
        surface.forceActiveFocus(Qt.PopupFocusReason);
    }

    // Not every desktop gives the keyboard back by itself. It is handed over first: a desktop that
    // sees its holder go chooses another one, and may not listen to an older wish any more.
    function dismiss(): void {
        (root.transientParent as Window)?.requestActivate();
        root.visible = false;
    }

    flags: Qt.Dialog | Qt.FramelessWindowHint | Qt.NoDropShadowWindowHint
    color: "transparent"
    onContentSizeChanged: {
        if (root.visible)
            root.place();
    }
    // A window that the desktop closes does not tell that by its visibility.
    onClosing: {
        root.visible = false;
        root.isOpen = false;
    }
    onVisibleChanged: root.isOpen = root.visible
    onIsOpenChanged: {
        if (!root.isOpen)
            root.closed();
    }

    FocusWatch {
        window: root
        onLost: {
            root.visible = false;
            rest.restart();
        }
    }
    Timer {
        id: rest

        interval: 300
    }
    FocusScope {
        id: surface

        anchors.fill: parent
        focus: true
        Keys.onEscapePressed: root.dismiss()
    }
}
