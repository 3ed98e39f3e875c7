import QtQuick
import QtQuick.Templates as T
import Plim.Shell

// A borderless button that shows a symbol and says what it does when the pointer rests on it.
T.AbstractButton {
    id: root

    required property string symbol
    required property string helpText
    property int side: Theme.headerButton
    property int symbolSize: Theme.iconHeader
    property bool isBold: false
    property color ink: Theme.ink
    property color restFill: "transparent"
    property color hoverFill: Theme.hoverFill
    property int radius: Theme.toolRadius

    implicitWidth: root.side
    implicitHeight: root.side
    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    Accessible.role: Accessible.Button
    Accessible.name: root.helpText
    Accessible.checkable: root.checkable
    Accessible.checked: root.checked
    Accessible.onPressAction: {
        if (root.enabled)
            root.clicked();
    }
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()
    onHoveredChanged: root.hovered ? HelpTip.show(root, root.helpText) : HelpTip.hide(root)
    onHelpTextChanged: HelpTip.update(root, root.helpText)
    onPressed: HelpTip.hide(root)
    Component.onDestruction: HelpTip.hide(root)

    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: root.symbol
            size: root.symbolSize
            isBold: root.isBold
            color: root.ink
        }
    }
    background: Rectangle {
        radius: root.radius
        color: root.down ? Theme.pressedFill : root.hovered ? root.hoverFill : root.restFill

        FocusRing {
            isFocused: root.activeFocus
            radius: root.radius
            ink: root.ink
        }
    }
}
