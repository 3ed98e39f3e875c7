import QtQuick
import QtQuick.Templates as T
import Plim.Shell

// Asks for the address of a link.
AlertDialog {
    id: root

    property string linkURL: ""

    signal confirmed(url: string)

    function confirm(): void {
        root.close();
        root.confirmed(root.linkURL);
    }

    objectName: "linkDialog"
    title: L10n.insertLink
    message: L10n.enterURL
    firstFocus: field
    onOpened: field.selectAll()

    content: T.TextField {
        id: field

        objectName: "linkField"
        width: parent?.width ?? 0
        height: Theme.buttonHeight
        leftPadding: Theme.fieldInsetX
        rightPadding: Theme.fieldInsetX
        verticalAlignment: TextInput.AlignVCenter
        text: root.linkURL
        color: Theme.ink
        selectByMouse: true
        selectionColor: Theme.confirmFill
        selectedTextColor: Theme.ink
        font: Theme.bodyFont
        inputMethodHints: Qt.ImhUrlCharactersOnly | Qt.ImhNoAutoUppercase
        Accessible.name: L10n.enterURL
        onTextEdited: root.linkURL = field.text
        onAccepted: root.confirm()

        background: Rectangle {
            radius: Theme.fieldRadius
            color: Theme.field
            border.width: field.activeFocus ? Theme.focusRing : Theme.hairlineWidth
            border.color: field.activeFocus ? Theme.confirmFill : Theme.hairline
        }

        Text {
            anchors.fill: parent
            leftPadding: Theme.fieldInsetX
            verticalAlignment: Text.AlignVCenter
            visible: field.text === ""
            text: "https://…"
            color: Theme.ink
            opacity: Theme.placeholderOpacity
            font: field.font
        }
    }
    buttons: [
        ActionButton {
            objectName: "linkInsert"
            text: L10n.insert
            fill: Theme.confirmFill
            onClicked: root.confirm()
        },
        ActionButton {
            objectName: "linkCancel"
            text: L10n.cancel
            onClicked: root.close()
        }
    ]
}
