pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Plim.Sticky

// The options of a note that is out in a sticky window, with what can be done with all of these.
NoteOptionsPopover {
    id: root

    required property StickyNoteController note

    // Windows are about to move, this one's too: it would be left behind.
    signal arranging()

    component Arrangement: T.Action {
        onTriggered: {
            root.arranging();
            root.dismiss();
        }
    }

    objectName: "stickyOptions"
    noteColor: root.note.color
    size: root.note.textSize
    openNotebook: T.Action {
        onTriggered: root.note.openNotebook()
    }
    newSticky: T.Action {
        onTriggered: root.note.newSticky(root.anchor.Window.window)
    }
    sortRandom: Arrangement {
        onTriggered: StickyNoteManager.sortRandomly()
    }
    sortByColor: Arrangement {
        onTriggered: root.note.sortByColor()
    }
    collapseAll: Arrangement {
        onTriggered: StickyNoteManager.collapseAll()
    }
    expandAll: Arrangement {
        onTriggered: StickyNoteManager.expandAll()
    }
    onUpdate: color => root.note.setColor(color)
    onSizeChange: size => root.note.setTextSize(size)
}
