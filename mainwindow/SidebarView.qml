pragma ComponentBehavior: Bound

import QtQuick
import Plim.MainWindow
import Plim.Shell
import Plim.Sticky

// The left column: tabs and actions, search, the list, the language.
FocusScope {
    id: root

    required property ContentController content
    required property int cornerRadius ///< of the window
    readonly property alias deleteDialog: deleteDialog

    signal closeRequested()

    function focusSearch(): void {
        search.focusSearch();
    }
    // The keyboard is the list's, or that of what stands in its place.
    function enterList(): void {
        if (list.count > 0)
            list.enter();
        else
            emptyList.forceActiveFocus(Qt.OtherFocusReason);
    }

    objectName: "sidebar"
    Keys.onEscapePressed: event => {
        if (root.content.multiSelection.isSelectionMode)
            root.content.multiSelection.end();
        else if (root.content.filteredNotes.searchText !== "")
            root.content.filteredNotes.searchText = "";
        else
            event.accepted = false;
    }

    VisualEffectView {
        anchors.fill: parent
        tint: Theme.sidebar
        leadingRadius: root.cornerRadius
    }
    SidebarHeader {
        id: header

        width: parent.width
        selectedTab: SelectionManager.selectedTab
        isSelectionMode: root.content.multiSelection.isSelectionMode
        onCloseRequested: root.closeRequested()
        onTabSelected: tab => root.content.selectTab(tab)
        onSelectionModeToggled: root.content.multiSelection.isSelectionMode = !root.content.multiSelection.isSelectionMode
        onMakeAllStickyRequested: root.content.makeAllSticky()
        onAddRequested: root.content.addNote()
    }
    SearchField {
        id: search

        anchors.top: header.bottom
        x: Theme.margin
        width: parent.width - 2 * Theme.margin
        onEdited: text => root.content.filteredNotes.searchText = text
        onLeaveRequested: root.enterList()

        Binding {
            target: search
            property: "text"
            value: root.content.filteredNotes.searchText
        }
    }
    NoteList {
        id: list

        anchors.top: search.bottom
        anchors.topMargin: Theme.gap
        anchors.bottom: footer.top
        width: parent.width
        focus: true
        visible: list.count > 0
        content: root.content
        onVisibleChanged: {
            if (list.visible ? emptyList.activeFocus : list.activeFocus)
                root.enterList();
        }
        onDeleteRequested: noteID => deleteDialog.ask(noteID)
    }
    EmptyList {
        id: emptyList

        objectName: "emptyList"
        anchors.centerIn: list
        visible: list.count === 0
        isSearching: root.content.filteredNotes.searchText !== ""
    }
    LanguageFooter {
        id: footer

        anchors.bottom: parent.bottom
        width: parent.width
    }
    DeleteNoteDialog {
        id: deleteDialog

        onDeleteConfirmed: noteID => root.content.deleteNote(noteID)
        onArchiveChosen: noteID => root.content.archiveNote(noteID)
    }
    Connections {
        target: root.content

        function onSearchFocusRequested() {
            root.focusSearch();
        }
    }
}
