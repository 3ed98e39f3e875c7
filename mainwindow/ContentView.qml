pragma ComponentBehavior: Bound

import QtQuick
import Plim.Editor
import Plim.MainWindow
import Plim.Shell

// The main window: the list of notes on the left, the selected note's editor on the right.
Window {
    id: root

    required property ContentController content

    width: 1100
    height: 700
    minimumWidth: 900
    minimumHeight: 560
    title: "Plim"
    color: "#24272d"

    onFrameSwapped: {
        if (root.content.isEditorWanted)
            return;
        root.content.prepareEditor();
    }

    EditorController {
        id: editorController
    }

    Column {
        id: header

        x: 12
        y: 12
        width: sidebar.width - 24
        spacing: 10

        PlainButton {
            objectName: "newNote"
            width: parent.width
            text: L10n.newNoteHelp
            ink: "white"
            shade: "white"
            isLit: true
            onClicked: root.content.addNote()
        }
        Row {
            spacing: 4

            PlainButton {
                objectName: "notesTab"
                text: L10n.notesTab
                ink: "white"
                shade: "white"
                isLit: SelectionManager.selectedTab === SidebarTab.Notes
                onClicked: SelectionManager.selectedTab = SidebarTab.Notes
            }
            PlainButton {
                objectName: "archiveTab"
                text: L10n.archiveTab
                ink: "white"
                shade: "white"
                isLit: SelectionManager.selectedTab === SidebarTab.Archive
                onClicked: SelectionManager.selectedTab = SidebarTab.Archive
            }
        }
    }

    Item {
        id: sidebar

        anchors.left: parent.left
        anchors.top: header.bottom
        anchors.topMargin: 8
        anchors.bottom: parent.bottom
        width: Math.round(root.width * 0.4)

        NoteList {
            anchors.fill: parent
            anchors.leftMargin: 12
            anchors.rightMargin: 12
            anchors.bottomMargin: 12
            content: root.content
        }
    }

    Rectangle {
        id: pane

        anchors.left: sidebar.right
        anchors.top: parent.top
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        color: root.content.hasEditedNote ? root.content.paneColor : "#2e3239"

        Text {
            anchors.centerIn: parent
            visible: !root.content.hasEditedNote
            text: L10n.selectOrAddNote
            color: "#c8ccd2"
            font.family: "Outfit"
            font.pixelSize: 16
            font.weight: Font.DemiBold
        }
        CommandRow {
            id: commands

            x: 30 // where the page's text begins
            y: 12
            width: parent.width - 38
            visible: root.content.hasEditedNote
            controller: editorController
        }
        // The web engine's own module is loaded with this item, and not before.
        Loader {
            id: editor

            objectName: "editor"
            anchors.fill: parent
            anchors.topMargin: commands.y + commands.height + 10
            anchors.leftMargin: 24
            anchors.rightMargin: 8
            active: root.content.isEditorWanted
            visible: root.content.hasEditedNote
            source: "qrc:/qt/qml/Plim/Editor/RichTextEditor.qml"
            onLoaded: {
                editor.item.controller = editorController;
                editor.item.value = Qt.binding(() => root.content.editedNote);
            }
        }
        Connections {
            target: editor.item
            ignoreUnknownSignals: true

            function onEdited(noteID, html) {
                root.content.applyEdit(noteID, html);
            }
        }
    }
}
