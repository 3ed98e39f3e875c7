pragma ComponentBehavior: Bound

import QtQuick
import Plim.Shell

// The note that is being dragged, lifted off the list. Around it there is room for its shadow.
Item {
    id: root

    required property string title
    required property color noteColor
    required property real cardWidth ///< of the dragged row
    required property int reach ///< of the shadow, points

    implicitWidth: root.cardWidth + 2 * root.reach
    implicitHeight: card.height + 2 * root.reach

    CardShadow {
        anchors.fill: parent
        reach: root.reach
        radius: Theme.cardRadius
        drop: Theme.cardShadowDrop
        color: Theme.cardShadow
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
