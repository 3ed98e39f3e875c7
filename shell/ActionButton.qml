import QtQuick
import QtQuick.Templates as T
import Plim.Shell

// A button with a text, and a symbol before it where there is one.
T.AbstractButton {
    id: root

    property string symbol: ""
    property color fill: Theme.buttonFill
    property color ink: Theme.ink

    leftPadding: Theme.margin
    rightPadding: Theme.margin
    implicitWidth: root.implicitContentWidth + root.leftPadding + root.rightPadding
    implicitHeight: Theme.buttonHeight
    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    Accessible.role: Accessible.Button
    Accessible.name: root.text
    Accessible.onPressAction: {
        if (root.enabled)
            root.clicked();
    }
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    contentItem: SymbolLabel {
        symbol: root.symbol
        text: root.text
        ink: root.ink
        font: Theme.buttonFont
        opacity: root.enabled ? 1 : 0.5
    }
    background: Rectangle {
        radius: Theme.buttonRadius
        color: root.fill
        opacity: root.enabled ? 1 : 0.5

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: root.down ? Theme.pressedFill : root.hovered ? Theme.hoverFill : "transparent"
        }
        FocusRing {
            isFocused: root.activeFocus
            radius: parent.radius
        }
    }
}
