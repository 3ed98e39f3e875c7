import QtQuick
import Plim.MainWindow
import Plim.Shell

// For some seconds: what was done, and the way back.
Rectangle {
    id: root

    required property UndoOffer offer

    objectName: "undoBar"
    width: row.width + 2 * Theme.margin
    height: Theme.undoBarHeight
    radius: Theme.sheetRadius
    color: Theme.sheet
    border.width: Theme.hairlineWidth
    border.color: Theme.sheetBorder
    opacity: root.offer.isOffered ? 1 : 0
    visible: opacity > 0
    enabled: root.offer.isOffered
    Accessible.role: Accessible.AlertMessage
    Accessible.name: root.offer.text

    Behavior on opacity {
        NumberAnimation {
            duration: Theme.fadeDuration
        }
    }

    Row {
        id: row

        anchors.centerIn: parent
        spacing: Theme.gap

        Text {
            anchors.verticalCenter: parent.verticalCenter
            leftPadding: Theme.gap / 2
            text: root.offer.text + " —"
            color: Theme.ink
            font: Theme.bodyFont
        }
        ActionButton {
            objectName: "undoDelete"
            anchors.verticalCenter: parent.verticalCenter
            implicitHeight: Theme.buttonHeight - 6
            text: root.offer.actionText
            ink: Theme.hit
            fill: "transparent"
            onClicked: root.offer.undo()
        }
    }
}
