import QtQuick
import Plim.Shell
import Plim.Sticky

// The ground of a sticky card, in its note's colour.
Item {
    id: root

    required property color tint

    Behavior on tint {
        ColorAnimation {
            duration: Theme.glideDuration
        }
    }

    GlassView {
        anchors.fill: parent
        material: VisualEffectView.Sheet
        tint: Qt.alpha(root.tint, Theme.glassOpacity)
        light: Theme.glassLight
        body: Theme.glassBody
        shade: Theme.glassShade
        edge: Theme.glassEdge
        leadingRadius: Theme.stickyRadius
        trailingRadius: Theme.stickyRadius
    }
}
