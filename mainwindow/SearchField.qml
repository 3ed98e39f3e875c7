import QtQuick
import QtQuick.Templates as T
import Plim.Shell

// Narrows the list to the notes that hold what is typed.
Rectangle {
    id: root

    property alias text: field.text
    readonly property alias isSearchFocused: field.activeFocus

    signal edited(text: string)
    /// The keyboard is not needed here any more.
    signal leaveRequested()

    function focusSearch(): void {
        field.forceActiveFocus(Qt.ShortcutFocusReason);
        field.selectAll();
    }
    function clear(): void {
        root.edited("");
        field.forceActiveFocus(Qt.OtherFocusReason);
    }

    implicitHeight: Math.max(field.implicitHeight, Theme.icon) + 2 * Theme.fieldInsetY
    radius: Theme.fieldRadius
    color: field.activeFocus ? Theme.fieldFocused : Theme.field

    Behavior on color {
        ColorAnimation {
            duration: Theme.hoverDuration
        }
    }

    // The ground around the text looks like the field, and is the field.
    TapHandler {
        onTapped: field.forceActiveFocus(Qt.MouseFocusReason)
    }
    Symbol {
        id: glass

        x: Theme.fieldInsetX
        anchors.verticalCenter: parent.verticalCenter
        name: "magnifyingglass"
        size: Theme.iconSmall
        opacity: Theme.placeholderOpacity
    }
    T.TextField {
        id: field

        objectName: "searchField"
        anchors.left: glass.right
        anchors.leftMargin: Theme.gap
        anchors.right: clearButton.visible ? clearButton.left : parent.right
        anchors.rightMargin: clearButton.visible ? Theme.gap / 2 : Theme.fieldInsetX
        anchors.verticalCenter: parent.verticalCenter
        implicitHeight: contentHeight
        color: Theme.ink
        selectByMouse: true
        selectionColor: Theme.confirmFill
        selectedTextColor: Theme.ink
        font: Theme.searchFont
        Accessible.role: Accessible.EditableText
        Accessible.name: L10n.searchNotes
        onTextEdited: root.edited(field.text)
        onAccepted: root.leaveRequested()
        Keys.onDownPressed: root.leaveRequested()
        Keys.onEscapePressed: field.text === "" ? root.leaveRequested() : root.clear()

        Text {
            anchors.fill: parent
            verticalAlignment: Text.AlignVCenter
            visible: field.text === "" && field.preeditText === ""
            text: L10n.searchNotes
            elide: Text.ElideRight
            color: Theme.ink
            opacity: Theme.placeholderOpacity
            font: field.font
        }
    }
    SymbolButton {
        id: clearButton

        objectName: "clearSearch"
        anchors.right: parent.right
        anchors.rightMargin: Theme.gap / 2
        anchors.verticalCenter: parent.verticalCenter
        visible: field.text !== ""
        side: Theme.rowButton
        symbolSize: Theme.iconSmall
        symbol: "xmark.circle.fill"
        helpText: L10n.clearSearch
        onClicked: root.clear()
    }
    FocusRing {
        isFocused: field.activeFocus
        radius: root.radius
    }
}
