import QtQuick
import QtQuick.Templates as T
import Plim.Shell

// One action of the options: a symbol and a label in capitals.
T.AbstractButton {
    id: root

    required property string symbol
    property bool isSub: false

    leftPadding: Theme.optionPadding
    rightPadding: Theme.optionPadding
    implicitWidth: root.implicitContentWidth + root.leftPadding + root.rightPadding
    implicitHeight: Theme.buttonHeight - (root.isSub ? 2 : 0)
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: root.text
    Accessible.onPressAction: {
        if (root.enabled)
            root.clicked();
    }
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    contentItem: SymbolLabel {
        isCentred: false
        indent: root.isSub ? Theme.margin : 0
        symbol: root.symbol
        symbolSize: Theme.icon
        text: root.text
        ink: Theme.ink
        font: Theme.optionFont
    }
    background: Rectangle {
        radius: Theme.optionRadius
        color: root.isSub ? Theme.optionFill : "transparent"

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
