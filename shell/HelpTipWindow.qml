import QtQuick
import Plim.Shell

// Draws the help tip.
Window {
    id: root

    function place(): void {
        const place = HelpTip.placeFor(Qt.size(root.width, root.height));
        root.x = place.x;
        root.y = place.y;
    }

    objectName: "helpTip"
    flags: Qt.ToolTip | Qt.FramelessWindowHint | Qt.WindowTransparentForInput | Qt.WindowDoesNotAcceptFocus
    color: "transparent"
    width: Math.ceil(label.implicitWidth) + 2 * Theme.gap
    height: Math.ceil(label.implicitHeight) + Theme.gap
    onWidthChanged: root.place()

    Connections {
        target: HelpTip

        function onIsShownChanged() {
            if (HelpTip.isShown) {
                root.transientParent = HelpTip.host;
                root.place();
            }
            root.visible = HelpTip.isShown;
        }
    }
    Rectangle {
        anchors.fill: parent
        radius: Theme.toolRadius
        color: Theme.tip
        border.width: Theme.hairlineWidth
        border.color: Theme.hairline

        Text {
            id: label

            anchors.centerIn: parent
            text: HelpTip.text
            textFormat: Text.PlainText
            color: Theme.ink
            font: Theme.tipFont
        }
    }
}
