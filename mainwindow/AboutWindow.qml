pragma ComponentBehavior: Bound

import QtQuick
import Plim.MainWindow
import Plim.Shell

// What the program is, where the notes are, and whose work is inside.
InfoWindow {
    id: root

    required property AboutInfo info

    objectName: "aboutWindow"
    title: "Plim"
    width: Theme.aboutWidth
    height: Theme.aboutHeight

    Column {
        id: head

        width: parent.width
        spacing: Theme.gap

        Text {
            text: L10n.tagline + "  " + L10n.version + " " + root.info.version
            color: Theme.secondaryInk
            font: Theme.bodyFont
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Item {
            width: parent.width
            height: Theme.gap / 2
        }
        Text {
            text: L10n.notesLieIn
            color: Theme.ink
            font: Theme.buttonFont
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Text {
            objectName: "notesFolder"
            width: parent.width
            text: root.info.notesFolder
            wrapMode: Text.WrapAnywhere
            color: Theme.ink
            font: Theme.bodyFont
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        ActionButton {
            objectName: "openFolder"
            focus: true
            symbol: "folder"
            text: L10n.openFolder
            onClicked: failure.visible = !root.info.openNotesFolder()
        }
        Text {
            id: failure

            objectName: "openFolderFailure"
            visible: false
            width: parent.width
            text: L10n.cannotOpenFolder
            wrapMode: Text.WordWrap
            color: Theme.destructive
            font: Theme.bodyFont
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
        Item {
            width: parent.width
            height: Theme.gap / 2
        }
        Text {
            text: L10n.whatIsInside
            color: Theme.ink
            font: Theme.buttonFont
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
    }
    ListView {
        objectName: "licences"
        anchors.top: head.bottom
        anchors.topMargin: Theme.gap
        anchors.bottom: parent.bottom
        width: parent.width
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        spacing: Theme.gap / 2
        model: root.info.licences

        delegate: Text {
            required property string modelData

            width: ListView.view.width
            text: modelData
            wrapMode: Text.WordWrap
            color: Theme.secondaryInk
            font: Theme.tipFont
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
