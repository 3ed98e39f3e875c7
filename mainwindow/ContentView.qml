pragma ComponentBehavior: Bound

import QtQuick
import Plim.Editor
import Plim.MainWindow
import Plim.Shell
import Plim.Sticky

// The main window: the sidebar on the left; on the right the editor, what can be done with the ticked
// notes, or a word about how to begin.
Window {
    id: root

    required property ContentController content
    readonly property bool isMaximized: root.visibility === Window.Maximized || root.visibility === Window.FullScreen
    readonly property int cornerRadius: root.isMaximized ? 0 : Theme.windowRadius
    // Where text is written, Ctrl+Z takes back what was written.
    readonly property bool isWriting: editorView.hasKeyboard || root.activeFocusItem instanceof TextInput
    readonly property bool isSelectionMode: root.content.multiSelection.isSelectionMode

    // What had the keyboard may go with its note, its panel or its bar: then it is the list's.
    function keepKeyboard(): void {
        const item = root.activeFocusItem; // null while another window has the keyboard
        if (item === root.contentItem || item?.visible === false || item?.enabled === false)
            sidebar.enterList();
    }

    width: Theme.windowWidth
    height: Theme.windowHeight
    minimumWidth: Theme.minimumWindowWidth
    minimumHeight: Theme.minimumWindowHeight
    title: "Plim"
    onFrameSwapped: {
        if (!root.content.isEditorWanted)
            root.content.prepareEditor();
    }
    onActiveFocusItemChanged: keyboardCheck.start()
    Component.onCompleted: windowState.restore()

    WindowConfig {}
    WindowShape {
        window: root
        radius: root.cornerRadius
    }
    // Later: a popup that closes, or a note that opens, is still handing the keyboard on.
    Timer {
        id: keyboardCheck

        interval: 0
        onTriggered: root.keepKeyboard()
    }
    WindowState {
        id: windowState

        window: root
    }
    Shortcut {
        sequence: "Ctrl+N"
        onActivated: root.content.addNote()
    }
    Shortcut {
        sequence: "Ctrl+F"
        onActivated: root.content.searchFocusRequested()
    }
    Shortcut {
        sequence: "Ctrl+Z"
        enabled: StickyNoteManager.canUndoArrange && !root.isWriting
        onActivated: StickyNoteManager.undoArrange()
    }
    Shortcut {
        sequence: "Esc"
        enabled: editorView.hasKeyboard && !root.content.reordering.state.isDragging
        onActivated: sidebar.enterList()
    }
    Shortcut {
        sequence: "Esc"
        enabled: root.isSelectionMode && !sidebar.deleteDialog.opened && !deleteAllDialog.opened
        onActivated: root.content.multiSelection.end()
    }

    Connections {
        target: root.content

        function onEditorFocusRequested() {
            editorView.controller.focusEditor();
        }
    }
    SidebarView {
        id: sidebar

        width: Math.round(root.width * Theme.sidebarShare)
        height: parent.height
        focus: true
        content: root.content
        cornerRadius: root.cornerRadius
        onCloseRequested: root.close()
    }

    // Square where it meets the sidebar, round at the window's corners.
    Item {
        id: pane

        anchors.left: sidebar.right
        anchors.right: parent.right
        height: parent.height
        clip: true

        Rectangle {
            objectName: "paneGround"
            x: -root.cornerRadius
            width: parent.width + root.cornerRadius
            height: parent.height
            radius: root.cornerRadius
            color: editorView.isShown ? editorView.noteColor : Theme.emptyPane

            Behavior on color {
                ColorAnimation {
                    duration: Theme.glideDuration
                }
            }
        }
        WindowDragArea {
            objectName: "paneDragArea"
            width: parent.width
            height: editorView.isShown ? Theme.editorTop : parent.height
        }
        EditorView {
            id: editorView

            anchors.fill: parent
            isShown: !root.isSelectionMode && root.content.hasEditedNote
            noteColor: root.content.paneColor
            isEditorWanted: root.content.isEditorWanted
            value: root.content.editedNote
            pickerJustClosed: popover.justClosed
            onIsShownChanged: keyboardCheck.start()
            onEdited: (noteID, html) => root.content.applyEdit(noteID, html)
            onShowColorPickerChanged: {
                if (editorView.showColorPicker)
                    popover.open();
                else
                    popover.visible = false;
            }
        }
        SelectionPanel {
            anchors.fill: parent
            visible: root.isSelectionMode
            countText: root.content.selectedCountText
            count: root.content.multiSelection.selectedIDs.count
            isArchive: SelectionManager.selectedTab === SidebarTab.Archive
            onVisibleChanged: keyboardCheck.start()
            onSelectAllRequested: root.content.selectAll()
            onArchiveRequested: root.content.archiveSelection()
            onDeleteRequested: deleteAllDialog.open()
            onEndRequested: root.content.multiSelection.end()
        }
        EmptyPane {
            anchors.fill: parent
            visible: !root.isSelectionMode && !root.content.hasEditedNote
        }
        UndoBar {
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.bottom: parent.bottom
            anchors.bottomMargin: Theme.undoBarMargin
            deletionUndo: root.content.deletionUndo
            onEnabledChanged: keyboardCheck.start()
        }
    }
    Rectangle {
        anchors.fill: parent
        visible: !root.isMaximized
        radius: root.cornerRadius
        color: "transparent"
        border.width: Theme.hairlineWidth
        border.color: Theme.hairline
    }
    ResizeEdges {
        anchors.fill: parent
        visible: !root.isMaximized
    }
    DeleteNotesDialog {
        id: deleteAllDialog

        onConfirmed: root.content.deleteSelection()
    }
    NoteOptionsPopover {
        id: popover

        objectName: "noteOptionsPopover"
        anchor: editorView.optionsAnchor
        noteColor: root.content.editedColor
        size: root.content.editedTextSize
        onUpdate: color => root.content.setEditedColor(color)
        onSizeChange: size => root.content.setEditedTextSize(size)
        onClosed: editorView.showColorPicker = false
    }
    HelpTipWindow {
        id: helpTip
    }
    WindowShape {
        window: helpTip
        radius: Theme.toolRadius
    }
    Loader {
        active: DragOverlayManager.isWanted
        source: "DragOverlay.qml"
    }
}
