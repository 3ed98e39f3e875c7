pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Plim.Sticky

// The options of a note that is out in a sticky window, with what can be done with all of these.
NoteOptionsPopover {
    id: root

    required property StickyNoteController note

    // The windows have been arranged, this one's too.
    signal arranged()

    // What had the keyboard may have come or gone with the form of the note.
    function finish(): void {
        root.dismiss();
        root.arranged();
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
    sortRandom: T.Action {
        onTriggered: {
            StickyNoteManager.sortRandomly();
            root.finish();
        }
    }
    sortByColor: T.Action {
        onTriggered: {
            root.note.sortByColor();
            root.finish();
        }
    }
    collapseAll: T.Action {
        onTriggered: {
            StickyNoteManager.collapseAll();
            root.finish();
        }
    }
    expandAll: T.Action {
        onTriggered: {
            StickyNoteManager.expandAll();
            root.finish();
        }
    }
    onUpdate: color => root.note.setColor(color)
    onSizeChange: size => root.note.setTextSize(size)
}
