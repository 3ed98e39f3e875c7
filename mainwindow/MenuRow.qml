pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Plim.Shell
import Plim.Sticky

// The program's menus, in the free strip above the editor. Their titles never take the keyboard: what
// is selected in the note stays so.
Row {
    id: root

    required property ApplicationMenus menus ///< or null
    required property color ink

    function dress(): void {
        if (!root.menus)
            return;
        root.menus.setLook(`
            QMenu { background: ${Theme.sheet}; border: 1px solid ${Theme.menuBorder};
                    border-radius: ${Compositing.isRunning ? Theme.menuRadius : 0}px; padding: 5px;
                    color: ${Theme.ink}; font-family: ${Theme.family}; font-size: 13px; }
            QMenu::item { padding: 5px 18px 5px 10px; border-radius: 5px; }
            QMenu::item:selected { background: ${Theme.menuHover}; }
            QMenu::item:disabled { color: ${Theme.menuDisabledInk}; }
            QMenu::icon { padding-left: 8px; }
            QMenu::separator { height: 1px; background: ${Theme.menuBorder}; margin: 5px 8px; }
            QToolTip { background: ${Theme.tip}; color: ${Theme.ink}; border: 0; padding: 5px;
                       font-family: ${Theme.family}; font-size: 12px; }`, Theme.menuSymbolInk);
    }

    objectName: "menuRow"
    height: Theme.menuRowHeight
    Accessible.role: Accessible.MenuBar
    Accessible.name: L10n.menuBar
    Component.onCompleted: root.dress()

    Connections {
        target: Compositing

        function onIsRunningChanged() {
            root.dress();
        }
    }
    Shortcut {
        sequence: "F10"
        enabled: root.menus !== null
        onActivated: root.menus.openByKey(0)
    }
    Repeater {
        model: root.menus ? root.menus.titles : []

        T.MenuItem { // for its role: that of a control cannot be set everywhere
            id: button

            required property string modelData
            required property int index
            readonly property bool isOpen: root.menus.openIndex === button.index

            objectName: "menu." + button.index
            leftPadding: Theme.gap
            rightPadding: Theme.gap
            implicitWidth: button.implicitContentWidth + button.leftPadding + button.rightPadding
            implicitHeight: root.height
            hoverEnabled: true
            focusPolicy: Qt.NoFocus
            text: button.modelData
            Accessible.role: Accessible.MenuItem
            Accessible.name: button.text
            Accessible.onPressAction: root.menus.openByKey(button.index)
            Component.onCompleted: root.menus.attach(button.index, button)
            onPressed: root.menus.press(button.index)

            Shortcut {
                sequence: "Alt+" + button.text.charAt(0)
                onActivated: root.menus.openByKey(button.index)
            }

            contentItem: Text {
                text: button.text
                color: Qt.alpha(root.ink, button.isOpen || button.hovered ? Theme.litMenuOpacity : Theme.menuOpacity)
                font: Theme.menuFont
                verticalAlignment: Text.AlignVCenter
            }
            background: Rectangle {
                radius: Theme.toolRadius
                color: Qt.alpha(root.ink, button.isOpen ? Theme.openMenuFill : button.hovered ? Theme.hoveredMenuFill : 0)
            }
        }
    }
}
