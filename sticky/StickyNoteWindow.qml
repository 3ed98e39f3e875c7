pragma ComponentBehavior: Bound

import QtQuick
import Plim.Shell
import Plim.Sticky

// A note on the desktop: its card, and around it the room for the card's shadow.
Window {
    id: root

    required property StickyNoteController note
    readonly property int shadow: shape.shadow

    flags: Qt.Window | Qt.FramelessWindowHint | Qt.NoDropShadowWindowHint
    title: "Plim"
    color: "transparent"
    width: Theme.stickyWidth + 2 * root.shadow
    height: Theme.stickyHeight + 2 * root.shadow
    minimumWidth: Theme.minimumStickyWidth + 2 * root.shadow
    minimumHeight: Theme.minimumStickyHeight + 2 * root.shadow

    WindowShape {
        id: shape

        window: root
        radius: Theme.stickyRadius
        wantedShadow: Theme.stickyShadowReach
        grip: Theme.stickyGrip
    }
    Shortcut {
        sequence: "Ctrl+W"
        onActivated: root.note.requestClose()
    }
    Shortcut {
        sequence: "Ctrl+Shift+P"
        enabled: root.note.canPin
        onActivated: root.note.togglePin()
    }
    Shortcut {
        sequence: "Ctrl+M"
        onActivated: root.note.toggleCollapse()
    }
    // Within the editor it takes back what was typed.
    Shortcut {
        sequence: "Ctrl+Z"
        enabled: StickyNoteManager.canUndoArrange && !view.hasEditorKeyboard
        onActivated: StickyNoteManager.undoArrange()
    }
    CardShadow {
        anchors.fill: parent
        visible: root.shadow > 0
        reach: root.shadow
        drop: Theme.stickyShadowDrop
        color: Theme.stickyShadow
        radius: Theme.stickyRadius
    }
    StickyNoteView {
        id: view

        anchors.fill: parent
        anchors.margins: root.shadow
        focus: true
        note: root.note
    }
    ResizeEdges {
        anchors.fill: parent
        anchors.margins: root.shadow - Theme.stickyGrip
        onResizeStarted: root.note.beginResizing()
    }
}
