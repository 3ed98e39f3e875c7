import QtQuick
import QtQuick.Templates as T
import Plim.MainWindow
import Plim.Shell

// How far an export or import is, and the way to stop it.
AlertDialog {
    id: root

    required property TransferProgress progress

    objectName: "transferDialog"
    title: root.progress.text
    firstFocus: cancelButton
    closePolicy: T.Popup.CloseOnEscape // a click beside is too easily done by the way
    onClosed: {
        if (root.progress.isShown)
            root.progress.cancel();
    }

    content: Rectangle {
        width: parent.width
        height: Theme.progressHeight
        radius: height / 2
        color: Theme.field
        Accessible.role: Accessible.ProgressBar
        Accessible.name: root.title

        Rectangle {
            objectName: "progressBar"
            width: Math.max(parent.height, parent.width * root.progress.share)
            height: parent.height
            radius: parent.radius
            color: Theme.confirmFill
        }
    }
    buttons: ActionButton {
        id: cancelButton

        objectName: "cancelTransfer"
        text: L10n.cancel
        onClicked: root.progress.cancel()
    }
}
