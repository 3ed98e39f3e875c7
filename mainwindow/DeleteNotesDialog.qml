import QtQuick
import Plim.Shell

// Asks before all ticked notes are deleted.
AlertDialog {
    id: root

    signal confirmed()

    objectName: "deleteNotesDialog"
    title: L10n.deleteNotesTitle
    message: L10n.deleteNotesMessage
    firstFocus: cancelButton

    buttons: [
        ActionButton {
            objectName: "confirmDeleteAll"
            text: L10n.deletePermanently
            fill: Theme.destructiveFill
            onClicked: {
                root.close();
                root.confirmed();
            }
        },
        ActionButton {
            id: cancelButton

            objectName: "cancelDeleteAll"
            text: L10n.cancel
            onClicked: root.close()
        }
    ]
}
