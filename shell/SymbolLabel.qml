import QtQuick
import Plim.Shell

// A text with a symbol before it, where there is one.
Item {
    id: root

    required property string symbol
    required property string text
    required property color ink
    required property font font
    property int symbolSize: Theme.iconHeader
    property bool isCentred: true
    property real indent: 0

    implicitWidth: row.implicitWidth + root.indent
    implicitHeight: row.implicitHeight

    Row {
        id: row

        x: root.isCentred ? Math.round((root.width - row.width) / 2) : root.indent
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.gap

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.symbol !== ""
            name: root.symbol
            size: root.symbolSize
            color: root.ink
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            color: root.ink
            font: root.font
        }
    }
}
