import QtQuick
import QtQuick.Templates as T

// A flat button: text, a light ground while hovered or lit, a ring while focused by the keyboard.
T.Button {
    id: root

    property bool isLit: false
    property color ink: "#e6000000"
    property color shade: "#000000"

    implicitWidth: Math.max(34, root.implicitContentWidth + 18)
    implicitHeight: 30
    hoverEnabled: true
    Accessible.name: root.text

    contentItem: Text {
        text: root.text
        color: root.ink
        font.family: "Outfit"
        font.pixelSize: 13
        font.weight: Font.DemiBold
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
    background: Rectangle {
        radius: 6
        color: Qt.alpha(root.shade, root.down ? 0.2 : root.isLit ? 0.14 : root.hovered ? 0.08 : 0)
        border.width: root.visualFocus ? 2 : 0
        border.color: root.ink
    }
}
