pragma ComponentBehavior: Bound

import QtQuick
import Plim.Shell
import Plim.Sticky

// The four controls of a sticky window: colour, pin, collapse or expand, close.
Row {
    id: root

    required property StickyNoteController note
    property bool showColorPicker: false

    function takeKeyboard(): void {
        fold.forceActiveFocus(Qt.OtherFocusReason);
    }
    function openColorPicker(): void {
        if (!picker.item)
            picker.setSource("StickyOptions.qml", {
                note: root.note,
                anchor: color
            });
        root.showColorPicker = true;
        (picker.item as StickyOptions).open();
    }
    function toggleColorPicker(): void {
        const popover = picker.item as StickyOptions;
        if (root.showColorPicker)
            popover.dismiss();
        else if (!popover?.justClosed)
            root.openColorPicker();
    }

    spacing: Theme.stickyControlGap

    component Control: SymbolButton {
        side: Theme.stickyControl
        radius: Theme.stickyControl / 2
        symbolSize: Theme.iconSmall
        ink: Qt.alpha(Theme.toolInk, hovered || activeFocus ? Theme.hoveredToolOpacity : Theme.toolOpacity)
        hoverFill: Theme.toolHoverFill
    }

    // Made when it is wanted: it is a window of its own, and most notes never show it.
    Loader {
        id: picker
    }
    Connections {
        target: picker.item
        ignoreUnknownSignals: true

        function onClosed() {
            root.showColorPicker = false;
        }
        function onArranged() {
            color.forceActiveFocus(Qt.OtherFocusReason);
        }
    }
    Control {
        id: color

        objectName: "sticky.color"
        symbol: ""
        helpText: L10n.noteColor
        onClicked: root.toggleColorPicker()

        Rectangle {
            anchors.centerIn: parent
            width: Theme.swatch
            height: Theme.swatch
            radius: width / 2
            color: root.note.tint
            border.width: Theme.swatchRingWidth
            border.color: Theme.swatchRing

            Rectangle {
                anchors.fill: parent
                anchors.margins: -1
                radius: width / 2
                color: "transparent"
                border.width: 1
                border.color: Theme.toolSeparator
            }
        }
    }
    // One that can do nothing says why: what is switched off has no tip of its own.
    Item {
        width: Theme.stickyControl
        height: Theme.stickyControl

        HoverHandler {
            id: overPin

            enabled: !root.note.canPin
            onHoveredChanged: overPin.hovered ? HelpTip.show(pin, pin.helpText) : HelpTip.hide(pin)
        }
        Control {
            id: pin

            objectName: "sticky.pin"
            enabled: root.note.canPin
            opacity: enabled ? 1 : Theme.disabledOpacity
            symbol: "pin.fill"
            isBold: root.note.isPinned
            checkable: false
            Accessible.checkable: true
            Accessible.checked: root.note.isPinned
            ink: Qt.alpha(Theme.toolInk, root.note.isPinned ? Theme.pinnedOpacity : hovered || activeFocus ? Theme.hoveredToolOpacity : Theme.toolOpacity)
            restFill: root.note.isPinned ? Theme.litFill : "transparent"
            helpText: !root.note.canPin ? L10n.cannotPin : root.note.isPinned ? L10n.unpin : L10n.pinOnTop
            onClicked: root.note.togglePin()
        }
    }
    Control {
        id: fold

        objectName: "sticky.fold"
        symbol: root.note.isUnfolded ? "chevron.up" : "chevron.down"
        helpText: root.note.isUnfolded ? L10n.collapseNote : L10n.expandNote
        onClicked: root.note.toggleCollapse()
    }
    Control {
        objectName: "sticky.close"
        symbol: "xmark"
        helpText: L10n.close
        onClicked: root.note.requestClose()
    }
}
