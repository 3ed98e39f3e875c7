pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Plim.Editor
import Plim.Shell

// The formatting buttons, in a column along the trailing edge. A button is lit while the text at the
// caret has its format.
Column {
    id: root

    required property EditorController controller

    signal linkRequested()

    objectName: "editorToolbar"
    Accessible.role: Accessible.ToolBar
    Accessible.name: L10n.formatting

    EditorToolbarModel {
        id: buttons

        controller: root.controller
        onLinkRequested: root.linkRequested()
    }
    Repeater {
        id: repeater

        model: buttons

        Column {
            id: entry

            required property int index
            required property string label
            required property bool isSymbol
            required property bool isLit
            required property string helpText
            required property string name
            required property bool endsGroup
            readonly property alias button: tool

            T.CheckBox { // for its role: that of a control cannot be set everywhere
                id: tool

                readonly property color ink: Qt.alpha(Theme.toolInk, entry.isLit ? Theme.litToolOpacity : tool.hovered ? Theme.hoveredToolOpacity : Theme.toolOpacity)

                objectName: "tool." + entry.label
                width: Theme.toolWidth
                height: Theme.toolHeight
                checked: entry.isLit
                nextCheckState: () => tool.checkState // lit by the text at the caret, not by a press
                hoverEnabled: true
                focusPolicy: Qt.TabFocus
                Accessible.role: Accessible.CheckBox
                Accessible.name: entry.name
                Accessible.onPressAction: tool.clicked()
                Accessible.onToggleAction: tool.clicked() // offered by its role, as the first one
                Keys.onReturnPressed: tool.clicked()
                Keys.onEnterPressed: tool.clicked()
                Keys.onUpPressed: repeater.itemAt(Math.max(0, entry.index - 1))?.button.forceActiveFocus(Qt.TabFocusReason)
                Keys.onDownPressed: repeater.itemAt(Math.min(repeater.count - 1, entry.index + 1))?.button.forceActiveFocus(Qt.TabFocusReason)
                onClicked: buttons.press(entry.index)
                onHoveredChanged: tool.hovered ? HelpTip.show(tool, entry.helpText) : HelpTip.hide(tool)
                onPressed: HelpTip.hide(tool)

                Connections {
                    target: entry

                    function onHelpTextChanged() {
                        HelpTip.update(tool, entry.helpText);
                    }
                }

                contentItem: Item {
                    Text {
                        anchors.centerIn: parent
                        visible: !entry.isSymbol
                        text: entry.isSymbol ? "" : entry.label
                        color: tool.ink
                        font: Theme.toolFont
                    }
                    Symbol {
                        anchors.centerIn: parent
                        visible: entry.isSymbol
                        name: entry.isSymbol ? entry.label : ""
                        size: Theme.iconTool
                        isBold: entry.isLit
                        color: tool.ink
                    }
                }
                background: Item {
                    Rectangle {
                        anchors.centerIn: parent
                        width: Theme.toolInnerWidth
                        height: Theme.toolInnerHeight
                        radius: Theme.toolRadius
                        color: entry.isLit ? Theme.litFill : tool.hovered ? Theme.toolHoverFill : "transparent"

                        FocusRing {
                            isFocused: tool.activeFocus
                            radius: Theme.toolRadius
                            ink: Theme.toolRing
                        }
                    }
                }
            }
            Item {
                visible: entry.endsGroup
                width: Theme.toolWidth
                height: Theme.gap + Theme.hairlineWidth

                Rectangle {
                    anchors.centerIn: parent
                    width: Theme.separatorWidth
                    height: Theme.hairlineWidth
                    color: Theme.toolSeparator
                }
            }
        }
    }
}
