import QtQuick
import Plim.Shell

// Stands where the rows would be.
Column {
    id: root

    required property bool isSearching
    readonly property string text: root.isSearching ? L10n.noResults : L10n.noNotes

    spacing: Theme.gap
    Accessible.role: Accessible.StaticText
    Accessible.name: root.text

    Symbol {
        anchors.horizontalCenter: parent.horizontalCenter
        objectName: "emptyListSymbol"
        name: root.isSearching ? "magnifyingglass" : "tray"
        size: Theme.iconEmptyList
        color: Theme.secondaryInk
    }
    Text {
        anchors.horizontalCenter: parent.horizontalCenter
        objectName: "emptyListText"
        text: root.text
        color: Theme.secondaryInk
        font: Theme.placeholderFont
    }
}
