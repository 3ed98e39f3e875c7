import QtQuick
import Plim.Shell

// As long as the notes cannot be written: since when, and what may help.
Rectangle {
    id: root

    required property string text

    objectName: "savingNotice"
    implicitWidth: label.implicitWidth + 2 * Theme.margin
    implicitHeight: label.height + 2 * Theme.gap
    radius: Theme.sheetRadius
    color: Theme.destructiveFill
    visible: root.text !== ""
    Accessible.role: Accessible.AlertMessage
    Accessible.name: root.text

    Text {
        id: label

        anchors.centerIn: parent
        width: parent.width - 2 * Theme.margin
        text: root.text
        wrapMode: Text.WordWrap
        horizontalAlignment: Text.AlignHCenter
        color: Theme.ink
        font: Theme.bodyFont
    }
}
