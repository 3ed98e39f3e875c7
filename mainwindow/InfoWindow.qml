import QtQuick
import Plim.Shell
import Plim.Sticky

// A small window of its own that tells something: dark like the sidebar, closed by Esc, Ctrl+W or its
// button, moved by its ground.
Window {
    id: root

    default property alias content: body.data

    flags: Qt.Dialog | Qt.FramelessWindowHint
    color: "transparent"
    visible: false

    WindowShape {
        window: root
        radius: Theme.windowRadius
    }
    Shortcut {
        sequences: ["Esc", "Ctrl+W"]
        onActivated: root.close()
    }
    Rectangle {
        anchors.fill: parent
        radius: Theme.windowRadius
        color: Theme.sheet
        border.width: Theme.hairlineWidth
        border.color: Theme.sheetBorder
    }
    WindowDragArea {
        anchors.fill: parent
        maximizes: false
    }
    Text {
        x: Theme.sheetPadding
        y: Theme.sheetPadding
        width: parent.width - 2 * Theme.sheetPadding - Theme.headerButton
        text: root.title
        elide: Text.ElideRight
        color: Theme.ink
        font: Theme.panelTitleFont
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Item {
        id: body

        anchors.fill: parent
        anchors.margins: Theme.sheetPadding
        anchors.topMargin: Theme.sheetPadding + Theme.headerHeight
    }
    SymbolButton {
        objectName: "closeInfo"
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: Theme.margin
        symbol: "xmark"
        symbolSize: Theme.iconSmall
        helpText: L10n.close
        onClicked: root.close()
    }
}
