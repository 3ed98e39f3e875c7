import QtQuick
import Plim.MainWindow
import Plim.Shell
import Plim.Sticky

// The panel of the floating card: above all windows, and no pointer meets it.
Window {
    id: root

    objectName: "dragOverlay"
    flags: Qt.ToolTip | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint | Qt.WindowTransparentForInput | Qt.WindowDoesNotAcceptFocus | Qt.NoDropShadowWindowHint
    color: "transparent"
    x: Math.round(DragOverlayManager.corner.x) - card.reach
    y: Math.round(DragOverlayManager.corner.y) - card.reach
    width: Math.ceil(card.implicitWidth)
    height: Math.ceil(card.implicitHeight)
    visible: DragOverlayManager.isShown

    WindowShape {
        id: shape

        window: root
        radius: Theme.cardRadius
        wantedShadow: Theme.cardShadowReach
    }
    DragPreviewCard {
        id: card

        anchors.fill: parent
        reach: shape.shadow
        title: DragOverlayManager.title
        noteColor: DragOverlayManager.color
        cardWidth: DragOverlayManager.width
    }
}
