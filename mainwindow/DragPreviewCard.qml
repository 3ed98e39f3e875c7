pragma ComponentBehavior: Bound

import QtQuick
import Plim.Shell

// The note that is being dragged, lifted off the list. Around it there is room for its shadow.
Item {
    id: root

    required property string title
    required property color noteColor
    required property real cardWidth ///< of the dragged row
    readonly property int reach: Theme.cardShadowReach

    implicitWidth: root.cardWidth + 2 * root.reach
    implicitHeight: card.height + 2 * root.reach

    // The shadow: rings that grow fainter outwards, because not every renderer can blur.
    Repeater {
        model: root.reach

        Rectangle {
            id: ring

            required property int index

            anchors.fill: card
            anchors.margins: -ring.index
            anchors.topMargin: -ring.index + 4
            anchors.bottomMargin: -ring.index - 4
            radius: Theme.cardRadius + ring.index
            color: "transparent"
            border.width: 1.5
            border.color: Qt.alpha(Theme.cardShadow, Theme.cardShadow.a * Math.pow(1 - ring.index / root.reach, 2.4) * 0.5)
        }
    }
    Rectangle {
        id: card

        x: root.reach
        y: root.reach
        width: root.cardWidth
        height: title.implicitHeight + 2 * Theme.cardPadding
        radius: Theme.cardRadius
        color: Theme.card
        border.width: Theme.hairlineWidth
        border.color: Theme.cardBorder

        Rectangle {
            id: dot

            x: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.marker
            height: Theme.marker
            radius: width / 2
            color: root.noteColor
        }
        Text {
            id: title

            anchors.left: dot.right
            anchors.leftMargin: Theme.margin
            anchors.right: parent.right
            anchors.rightMargin: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            text: root.title
            textFormat: Text.PlainText
            elide: Text.ElideRight
            maximumLineCount: 1
            horizontalAlignment: Text.AlignLeft
            color: Theme.cardInk
            font: Theme.rowTitleFont
        }
    }
}
