import QtQuick
import Plim.Shell

// What can be done with the ticked notes, in place of the editor.
FocusScope {
    id: root

    required property string countText
    required property int count
    required property bool isArchive

    signal selectAllRequested()
    signal archiveRequested()
    signal deleteRequested()
    signal endRequested()

    objectName: "selectionPanel"

    Column {
        anchors.centerIn: parent
        width: Theme.panelWidth
        spacing: Theme.gap

        Text {
            width: parent.width
            text: L10n.selectNotes
            horizontalAlignment: Text.AlignHCenter
            color: Theme.ink
            font: Theme.panelTitleFont
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Text {
            objectName: "selectedCount"
            width: parent.width
            bottomPadding: Theme.margin
            text: root.countText
            horizontalAlignment: Text.AlignHCenter
            color: Theme.secondaryInk
            font: Theme.bodyFont
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        ActionButton {
            objectName: "selectAll"
            width: parent.width
            symbol: "checkmark.circle"
            text: L10n.selectAll
            onClicked: root.selectAllRequested()
        }
        ActionButton {
            objectName: "archiveSelection"
            width: parent.width
            enabled: root.count > 0
            symbol: root.isArchive ? "tray.and.arrow.up" : "archivebox"
            text: root.isArchive ? L10n.restore : L10n.archive
            onClicked: root.archiveRequested()
        }
        ActionButton {
            objectName: "deleteSelection"
            width: parent.width
            enabled: root.count > 0
            symbol: "trash"
            text: L10n.remove
            ink: Theme.destructive
            onClicked: root.deleteRequested()
        }
        ActionButton {
            objectName: "endSelection"
            width: parent.width
            symbol: "xmark"
            text: L10n.endSelection
            onClicked: root.endRequested()
        }
    }
}
