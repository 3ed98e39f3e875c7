pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Plim.Shell

// A question over the window. Esc and a click beside it cancel; the keyboard stays within it, and
// goes back to where it was.
T.Popup {
    id: root

    required property string title
    required property Item firstFocus ///< has the keyboard when the dialog opens
    property string message: ""
    property alias content: extra.data
    property alias buttons: buttonRow.data
    readonly property FocusReturn focusReturn: FocusReturn {}

    parent: T.Overlay.overlay
    x: Math.round((root.parent.width - root.width) / 2)
    y: Math.round((root.parent.height - root.height) / 2.4)
    width: Math.max(Theme.sheetWidth, buttonRow.implicitWidth + 2 * Theme.sheetPadding)
    padding: Theme.sheetPadding
    implicitHeight: column.implicitHeight + 2 * Theme.sheetPadding
    modal: true
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    onAboutToShow: {
        root.focusReturn.remember(root.parent);
        root.firstFocus.focus = true; // at once: a key may be under way already
    }
    onAboutToHide: root.focusReturn.giveBack()

    T.Overlay.modal: Rectangle {
        radius: Theme.windowRadius
        color: Theme.dim
    }
    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.fadeDuration
        }
    }
    exit: Transition {
        NumberAnimation {
            property: "opacity"
            to: 0
            duration: Theme.fadeDuration
        }
    }
    background: Rectangle {
        radius: Theme.sheetRadius
        color: Theme.sheet
        border.width: Theme.hairlineWidth
        border.color: Theme.sheetBorder
    }
    contentItem: FocusScope { // qmllint disable deferred-property-id
        focus: true
        Accessible.role: Accessible.Dialog
        Accessible.name: root.title
        Accessible.description: root.message

        Column {
            id: column

            width: parent.width
            spacing: Theme.margin

            Text {
                width: parent.width
                text: root.title
                wrapMode: Text.WordWrap
                color: Theme.ink
                font: Theme.sheetTitleFont
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            Text {
                width: parent.width
                visible: text !== ""
                text: root.message
                wrapMode: Text.Wrap // a path has no spaces
                lineHeight: 1.2
                color: Theme.ink
                opacity: 0.85
                font: Theme.bodyFont
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            Item {
                id: extra

                width: parent.width
                height: childrenRect.height
                visible: children.length > 0
            }
            Item {
                width: parent.width
                height: buttonRow.height + Theme.gap

                Row {
                    id: buttonRow

                    anchors.right: parent.right
                    anchors.bottom: parent.bottom
                    spacing: Theme.gap
                }
            }
        }
    }
}
