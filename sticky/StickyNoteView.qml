pragma ComponentBehavior: Bound

import QtQuick
import Plim.Editor
import Plim.Shell
import Plim.Sticky

// The content of a sticky window: a glass card in the note's colour with its editor, or, collapsed to
// a capsule, with its title; and the controls.
FocusScope {
    id: root

    required property StickyNoteController note
    readonly property bool hasEditorKeyboard: editor.activeFocus
    readonly property bool showsControls: hover.hovered || root.note.isActive || controls.showColorPicker

    // What had the keyboard may have gone with the form.
    function keepKeyboard(): void {
        if (!root.Window.active)
            return;
        if (root.note.showsEditor)
            root.note.controller.focusEditor();
        else
            controls.takeKeyboard();
    }

    objectName: "stickyNoteView"

    HoverHandler {
        id: hover
    }
    Connections {
        target: root.note

        function onShowsEditorChanged() {
            root.keepKeyboard();
        }
        // Controls that went out of sight have lost it. Later: whoever brought the window to the
        // front may have somebody in mind.
        function onIsActiveChanged() {
            // Qt 6.4 describes this method as a property that may be one.
            Qt.callLater(() => { // qmllint disable
                const item = root.Window.activeFocusItem;
                if (item === root || item === root.Window.contentItem)
                    root.keepKeyboard();
            });
        }
    }
    GlassCard {
        anchors.fill: parent
        tint: root.note.tint
    }
    WindowDragArea {
        objectName: "stickyDragArea"
        anchors.fill: parent
        maximizes: false
        cursorShape: Qt.OpenHandCursor
        onClicked: root.keepKeyboard()
        onDoubleClicked: {
            if (!root.note.isUnfolded)
                root.note.toggleCollapse();
        }
    }
    Text {
        objectName: "stickyTitle"
        Accessible.role: Accessible.StaticText
        Accessible.name: text
        anchors.left: parent.left
        anchors.leftMargin: Theme.stickyPadding
        anchors.right: root.showsControls ? controls.left : parent.right
        anchors.rightMargin: root.showsControls ? Theme.gap : Theme.stickyPadding
        anchors.verticalCenter: controls.verticalCenter
        visible: !root.note.showsEditor && root.note.hasNote
        text: visible ? root.note.title : ""
        textFormat: Text.PlainText
        elide: Text.ElideRight
        maximumLineCount: 1
        horizontalAlignment: Text.AlignLeft
        color: Theme.capsuleInk
        font: Theme.capsuleFont
    }
    // The page keeps a wide strip free below its text, which may lie outside of the card.
    RichTextEditor {
        id: editor

        objectName: "editor"
        anchors.fill: parent
        anchors.topMargin: Theme.stickyTop
        anchors.leftMargin: Theme.stickyLeading
        anchors.rightMargin: Theme.stickyTrailing
        anchors.bottomMargin: -Theme.stickyOverhang
        // Not by its visibility: the web engine does not survive that a hidden page's process dies.
        enabled: root.note.showsEditor && root.note.hasNote
        opacity: editor.enabled ? 1 : 0
        Accessible.ignored: !editor.enabled
        value: root.note.editedNote
        controller: root.note.controller
        onEdited: (noteID, html) => root.note.applyEdit(noteID, html)
        onLinkHovered: link => {
            if (String(link) !== "")
                HelpTip.showAtPointer(editor, L10n.openLinkHint);
            else
                HelpTip.hide(editor);
        }
    }
    StickyControls {
        id: controls

        anchors.right: parent.right
        anchors.rightMargin: Theme.gap
        y: Math.round(((root.note.showsEditor ? Theme.stickyTop : parent.height) - height) / 2)
        visible: root.note.hasNote && (root.showsControls || opacity > 0)
        note: root.note
        opacity: root.showsControls ? 1 : 0

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.buttonFadeDuration
                easing.type: Easing.InOutQuad
            }
        }
    }
}
