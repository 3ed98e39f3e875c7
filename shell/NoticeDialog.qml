import QtQuick
import Plim.Shell

// Something to know, and one button.
AlertDialog {
    id: root

    function tell(title: string, message: string): void {
        root.title = title;
        root.message = message;
        root.open();
    }

    objectName: "noticeDialog"
    title: ""
    firstFocus: okButton

    buttons: ActionButton {
        id: okButton

        objectName: "closeNotice"
        text: L10n.ok
        fill: Theme.confirmFill
        onClicked: root.close()
    }
}
