pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Plim.MainWindow
import Plim.Shell

// The versions of the notes that there are, and the question which of them is to come back.
AlertDialog {
    id: root

    required property VersionRestore restore

    property int chosen: 0

    objectName: "restoreDialog"
    width: Theme.wideSheetWidth
    title: L10n.replaceNotesTitle
    message: L10n.replaceNotesMessage
    firstFocus: cancelButton
    onAboutToShow: root.chosen = 0

    content: Column {
        width: parent.width
        spacing: Theme.gap / 2

        Repeater {
            model: root.restore.versions

            T.RadioButton {
                id: version

                required property var modelData
                required property int index
                readonly property bool isChosen: root.chosen === version.index

                objectName: "version." + version.index
                width: parent.width
                implicitHeight: version.implicitContentHeight + 2 * Theme.gap
                checkable: false
                hoverEnabled: true
                focusPolicy: Qt.TabFocus
                Accessible.role: Accessible.RadioButton
                Accessible.name: version.modelData.date + ", " + version.modelData.count
                Accessible.description: version.modelData.headings
                Accessible.checkable: true
                Accessible.checked: version.isChosen
                Accessible.onPressAction: version.clicked()
                Keys.onReturnPressed: version.clicked()
                Keys.onEnterPressed: version.clicked()
                Keys.onUpPressed: root.chosen = Math.max(0, root.chosen - 1)
                Keys.onDownPressed: root.chosen = Math.min(root.restore.versions.length - 1, root.chosen + 1)
                onClicked: root.chosen = version.index

                contentItem: Column {
                    x: Theme.margin
                    y: Theme.gap
                    leftPadding: Theme.margin
                    topPadding: Theme.gap
                    spacing: 2

                    Text {
                        text: version.modelData.date + " · " + version.modelData.count
                        color: Theme.ink
                        font: Theme.buttonFont
                    }
                    Text {
                        width: version.width - 2 * Theme.margin
                        text: version.modelData.headings
                        elide: Text.ElideRight
                        color: Theme.secondaryInk
                        font: Theme.bodyFont
                    }
                }
                background: Rectangle {
                    radius: Theme.buttonRadius
                    color: version.isChosen ? Theme.rowTicked : version.hovered ? Theme.hoverFill : "transparent"
                    border.width: Theme.hairlineWidth
                    border.color: version.isChosen ? Theme.secondaryInk : Theme.sheetBorder

                    FocusRing {
                        isFocused: version.activeFocus
                        radius: parent.radius
                    }
                }
            }
        }
    }
    buttons: [
        ActionButton {
            objectName: "confirmRestore"
            text: L10n.replaceNotes
            fill: Theme.confirmFill
            onClicked: {
                root.restore.replaceNotes(root.chosen);
                root.close();
            }
        },
        ActionButton {
            id: cancelButton

            objectName: "cancelRestore"
            text: L10n.cancel
            onClicked: root.close()
        }
    ]
}
