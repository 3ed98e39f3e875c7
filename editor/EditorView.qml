pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Plim.Editor
import Plim.Shell

// The main window's editor pane: the note's page on its colour, the formatting buttons along the
// trailing edge, and the button for the note's options.
Item {
    id: root

    required property color noteColor
    required property bool isEditorWanted ///< the web engine may be started
    property var value ///< RichTextEditor, the note shown
    property bool isShown: true
    property bool showColorPicker: false
    property bool pickerJustClosed: false
    readonly property alias controller: editorController
    readonly property alias optionsAnchor: optionsButton
    readonly property alias linkDialog: linkDialog
    readonly property alias hasKeyboard: editor.activeFocus ///< what is typed goes into the note

    signal edited(noteID: var, html: string)

    objectName: "editorView"
    // Not by its visibility: the web engine does not survive that a hidden page's process dies.
    opacity: root.isShown ? 1 : 0
    enabled: root.isShown

    EditorController {
        id: editorController

        onLinkAtCaretReady: address => {
            linkDialog.linkURL = address;
            linkDialog.open();
        }
    }
    // The web engine's own module is loaded with this item, and not before.
    Loader {
        id: editor

        objectName: "editor"
        anchors.fill: parent
        anchors.topMargin: Theme.editorTop
        anchors.leftMargin: Theme.editorLeading
        anchors.rightMargin: Theme.editorTrailing
        active: root.isEditorWanted
        source: "qrc:/qt/qml/Plim/Editor/RichTextEditor.qml"
        onLoaded: {
            editor.item.controller = editorController;
            editor.item.value = Qt.binding(() => root.value);
        }
    }
    Connections {
        target: editor.item
        ignoreUnknownSignals: true

        function onEdited(noteID, html) {
            root.edited(noteID, html);
        }
        function onLinkHovered(link) {
            if (String(link) !== "")
                HelpTip.showAtPointer(editor, L10n.openLinkHint);
            else
                HelpTip.hide(editor);
        }
    }
    EditorToolbar {
        anchors.right: parent.right
        anchors.rightMargin: Theme.editorTrailing
        y: Theme.editorTop + Math.max(0, Math.round((parent.height - Theme.editorTop - height) / 2))
        controller: editorController
        onLinkRequested: editorController.requestLinkAtCaret()
    }
    T.AbstractButton {
        id: optionsButton

        objectName: "noteOptions"
        anchors.right: parent.right
        anchors.rightMargin: Theme.optionsTrailing
        y: Theme.optionsTop
        width: Theme.optionsWidth
        height: Theme.optionsHeight
        hoverEnabled: true
        focusPolicy: Qt.TabFocus
        Accessible.role: Accessible.Button
        Accessible.name: L10n.noteColor
        Accessible.onPressAction: optionsButton.clicked()
        Keys.onReturnPressed: optionsButton.clicked()
        Keys.onEnterPressed: optionsButton.clicked()
        onClicked: root.showColorPicker = !root.showColorPicker && !root.pickerJustClosed
        onHoveredChanged: optionsButton.hovered ? HelpTip.show(optionsButton, L10n.noteColor) : HelpTip.hide(optionsButton)
        onPressed: HelpTip.hide(optionsButton)

        contentItem: Item {
            Row {
                anchors.centerIn: parent
                spacing: Theme.optionsDot / 2

                Repeater {
                    model: 3

                    Rectangle {
                        width: Theme.optionsDot
                        height: Theme.optionsDot
                        radius: Theme.optionsDot / 2
                        color: Qt.alpha(Theme.toolInk, optionsButton.hovered || root.showColorPicker ? Theme.litToolOpacity : Theme.hoveredToolOpacity)
                    }
                }
            }
        }
        background: Rectangle {
            radius: height / 2
            color: root.showColorPicker ? Theme.litFill : Theme.toolHoverFill

            FocusRing {
                isFocused: optionsButton.activeFocus
                radius: parent.radius
                ink: Theme.toolRing
            }
        }
    }
    LinkDialog {
        id: linkDialog

        onConfirmed: url => editorController.runLink(url)
    }
}
