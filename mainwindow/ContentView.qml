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
    property Commands commands: null ///< whose keys are listened to
    property ApplicationMenus menus: null
    readonly property bool isMaximized: root.visibility === Window.Maximized || root.visibility === Window.FullScreen
    readonly property int cornerRadius: root.isMaximized ? 0 : Theme.windowRadius
    // Where text is written, Ctrl+Z takes back what was written.
    readonly property bool isWriting: editorView.hasKeyboard || root.activeFocusItem instanceof TextInput
    readonly property bool isAsking: sidebar.deleteDialog.opened || deleteAllDialog.opened || editorView.linkDialog.opened || restoreDialog.opened || noticeDialog.opened || transferDialog.opened
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
    onActiveFocusItemChanged: keyboardCheck.start()
    Component.onCompleted: windowState.restore()

    // The list alone needs no web engine, whose processes weigh four times as much. Who turns to the
    // window may open a note, and what he types before there is a page for it is held.
    FirstInput {
        window: root
        onHappened: root.content.prepareEditor()
    }
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
    CommandKeyListener {
        commands: root.commands
        isListening: !(root.active && root.isAsking)
    }
    // Where nobody is writing; in a text it is the text's.
    Shortcut {
        sequence: "Ctrl+Z"
        enabled: !root.isWriting && !root.isAsking && (root.content.undoOffer.isOffered || StickyNoteManager.canUndoArrange)
        onActivated: root.content.undo()
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

    Binding {
        target: root.content
        property: "isAsking"
        value: root.isAsking
    }
    Binding {
        target: root.content
        property: "isWriting"
        value: root.isWriting
    }
    Connections {
        target: root.content

        function onEditorFocusRequested() {
            editorView.controller.focusEditor();
        }
        function onNoticeRequested(title, message) {
            noticeDialog.tell(title, message);
        }
    }
    Connections {
        target: root.content.transferProgress

        function onIsShownChanged() {
            if (root.content.transferProgress.isShown)
                transferDialog.open();
            else
                transferDialog.close();
        }
    }
    Connections {
        target: root.content.versionRestore

        function onAsked() {
            restoreDialog.open();
        }
        function onRestored(message) {
            noticeDialog.tell(L10n.backupRestored, message);
        }
        function onFailed() {
            noticeDialog.tell(L10n.restoreFailedTitle, L10n.restoreFailedMessage);
        }
        function onNotesAboutToBeReplaced() {
            sidebar.enterList();
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
        MenuRow {
            x: Theme.menuRowLeading
            y: Theme.menuRowTop
            menus: root.menus
            ink: editorView.isShown ? Theme.toolInk : Theme.ink
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
        SavingNotice {
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.bottom: undoBar.visible ? undoBar.top : parent.bottom
            anchors.bottomMargin: undoBar.visible ? Theme.gap : Theme.undoBarMargin
            width: Math.min(implicitWidth, parent.width - 2 * Theme.undoBarMargin)
            text: root.content.savingFailsText
        }
        UndoBar {
            id: undoBar

            anchors.horizontalCenter: parent.horizontalCenter
            anchors.bottom: parent.bottom
            anchors.bottomMargin: Theme.undoBarMargin
            offer: root.content.undoOffer
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
    RestoreDialog {
        id: restoreDialog

        restore: root.content.versionRestore
    }
    TransferDialog {
        id: transferDialog

        progress: root.content.transferProgress
    }
    NoticeDialog {
        id: noticeDialog
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
