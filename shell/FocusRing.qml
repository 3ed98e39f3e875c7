import QtQuick
import Plim.Shell

// Drawn around what has the keyboard, for those who use the keyboard.
Rectangle {
    id: root

    required property bool isFocused
    property color ink: Theme.accent

    anchors.fill: parent
    visible: InputModality.isKeyboard && root.isFocused // in this order it watches from the start
    color: "transparent"
    border.width: Theme.focusRing
    border.color: root.ink
}
