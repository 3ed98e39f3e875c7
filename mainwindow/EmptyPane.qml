import QtQuick
import Plim.Shell

// No note is open.
Item {
    id: root

    objectName: "emptyPane"
    Accessible.role: Accessible.StaticText
    Accessible.name: L10n.selectOrAddNote

    Column {
        anchors.centerIn: parent
        spacing: Theme.margin

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "note.text"
            size: Theme.iconEmptyPane
            color: Theme.secondaryInk
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: L10n.selectOrAddNote
            color: Theme.secondaryInk
            font: Theme.emptyPaneFont
        }
    }
}
