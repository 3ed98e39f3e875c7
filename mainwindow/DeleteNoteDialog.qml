import QtQuick
import Plim.Shell

// Asks before a note is deleted, and offers the gentler way.
AlertDialog {
    id: root

    property string notePendingDeletion: "" ///< its id

    signal deleteConfirmed(noteID: string)
    signal archiveChosen(noteID: string)

    function ask(noteID: string): void {
        root.notePendingDeletion = noteID;
        root.open();
    }

    objectName: "deleteNoteDialog"
    title: L10n.deleteNoteTitle
    message: L10n.deleteNoteMessage
    firstFocus: cancelButton
    onClosed: root.notePendingDeletion = ""

    buttons: [
        ActionButton {
            objectName: "confirmDelete"
            text: L10n.deletePermanently
            fill: Theme.destructiveFill
            onClicked: {
                root.deleteConfirmed(root.notePendingDeletion);
                root.close();
            }
        },
        ActionButton {
            objectName: "archiveInstead"
            text: L10n.archive
            onClicked: {
                root.archiveChosen(root.notePendingDeletion);
                root.close();
            }
        },
        ActionButton {
            id: cancelButton

            objectName: "cancelDelete"
            text: L10n.cancel
            onClicked: root.close()
        }
    ]
}
