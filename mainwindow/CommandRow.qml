pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Plim.Editor
import Plim.MainWindow
import Plim.Shell

// A button for each of the editor's commands. The link asks for its address first.
Column {
    id: root

    required property EditorController controller

    function askForLink() {
        linkField.text = "https://";
        linkRow.visible = true;
        linkField.forceActiveFocus();
        linkField.selectAll();
    }
    function insertLink() {
        root.closeLink();
        root.controller.runLink(linkField.text);
    }
    // What is typed next belongs into the note, not into a field that is out of sight.
    function closeLink() {
        linkRow.visible = false;
        root.controller.focusEditor();
    }

    objectName: "commandRow"
    spacing: 6

    Flow {
        width: parent.width
        spacing: 2

        Repeater {
            model: [
                { text: "H1", name: "heading1", lit: "h1", run: () => root.controller.runHeading(1) },
                { text: "H2", name: "heading2", lit: "h2", run: () => root.controller.runHeading(2) },
                { text: "H3", name: "heading3", lit: "h3", run: () => root.controller.runHeading(3) },
                { text: "P", name: "paragraph", lit: "p", run: () => root.controller.run(CommandKind.Paragraph) },
                { text: "B", name: "bold", lit: "bold", run: () => root.controller.run(CommandKind.Bold) },
                { text: "I", name: "italic", lit: "italic", run: () => root.controller.run(CommandKind.Italic) },
                { text: "U", name: "underline", lit: "underline", run: () => root.controller.run(CommandKind.Underline) },
                { text: "S", name: "strikethrough", lit: "strike", run: () => root.controller.run(CommandKind.Strikethrough) },
                { text: "•", name: "bulletList", lit: "bullet", run: () => root.controller.run(CommandKind.BulletList) },
                { text: "1.", name: "numberedList", lit: "ordered", run: () => root.controller.run(CommandKind.NumberedList) },
                { text: "☑", name: "checkbox", lit: "checklist", run: () => root.controller.run(CommandKind.Checkbox) },
                { text: "Link", name: "link", lit: "link", run: () => linkRow.visible ? root.closeLink() : root.askForLink() },
                { text: "—", name: "divider", lit: "", run: () => root.controller.run(CommandKind.Divider) },
                { text: "↶", name: "undo", lit: "", run: () => root.controller.run(CommandKind.Undo) },
                { text: "↷", name: "redo", lit: "", run: () => root.controller.run(CommandKind.Redo) }
            ]

            PlainButton {
                required property var modelData

                objectName: modelData.name
                text: modelData.text
                isLit: modelData.lit !== "" && root.controller.formatState[modelData.lit]
                Accessible.name: modelData.name
                onClicked: modelData.run()
            }
        }
    }

    Row {
        id: linkRow

        visible: false
        spacing: 6

        T.TextField {
            id: linkField

            objectName: "linkField"
            width: 320
            height: 30
            leftPadding: 8
            rightPadding: 8
            verticalAlignment: TextInput.AlignVCenter
            text: "https://"
            color: "black"
            selectByMouse: true
            selectionColor: "#0a5ad2"
            selectedTextColor: "white"
            font.family: "Outfit"
            font.pixelSize: 14
            Accessible.name: L10n.enterURL
            background: Rectangle {
                radius: 6
                color: "#80ffffff"
                border.width: linkField.activeFocus ? 2 : 1
                border.color: "#80000000"
            }
            onAccepted: root.insertLink()
            Keys.onEscapePressed: root.closeLink()
        }
        PlainButton {
            text: L10n.insert
            onClicked: root.insertLink()
        }
        PlainButton {
            text: L10n.cancel
            onClicked: root.closeLink()
        }
    }
}
