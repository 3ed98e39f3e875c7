import QtQuick
import Plim.MainWindow
import Plim.Shell

// Close, the tabs, and what is done with the list as a whole.
Item {
    id: root

    required property int selectedTab
    required property bool isSelectionMode

    signal closeRequested()
    signal tabSelected(tab: int)
    signal selectionModeToggled()
    signal makeAllStickyRequested()
    signal addRequested()

    implicitHeight: Theme.headerHeight

    WindowDragArea {
        objectName: "headerDragArea"
        anchors.fill: parent
    }
    SymbolButton {
        id: closeButton

        objectName: "closeWindow"
        x: Theme.margin
        anchors.verticalCenter: parent.verticalCenter
        symbol: "xmark"
        symbolSize: Theme.iconSmall
        helpText: L10n.closeWindow
        onClicked: root.closeRequested()
    }
    TabSelector {
        anchors.left: closeButton.right
        anchors.leftMargin: Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        selectedTab: root.selectedTab
        onTabSelected: tab => root.tabSelected(tab)
    }
    Row {
        anchors.right: parent.right
        anchors.rightMargin: Theme.margin
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.gap / 2

        SymbolButton {
            objectName: "selectionMode"
            checkable: false
            checked: root.isSelectionMode
            symbol: root.isSelectionMode ? "checkmark.circle.fill" : "checkmark.circle"
            helpText: root.isSelectionMode ? L10n.endSelection : L10n.selectSeveral
            onClicked: root.selectionModeToggled()
        }
        SymbolButton {
            objectName: "makeAllSticky"
            symbol: "macwindow.badge.plus"
            helpText: L10n.extractAll
            onClicked: root.makeAllStickyRequested()
        }
        SymbolButton {
            objectName: "newNote"
            symbol: "plus"
            helpText: L10n.newNoteHelp
            onClicked: root.addRequested()
        }
    }
}
