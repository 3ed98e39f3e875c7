import QtQuick
import Plim.Shell
import Plim.Sticky

// Tinted glass with a light from above and a thin, light edge.
Item {
    id: root

    required property color tint

    Behavior on tint {
        ColorAnimation {
            duration: Theme.glideDuration
        }
    }

    VisualEffectView {
        anchors.fill: parent
        material: VisualEffectView.Sheet
        tint: Qt.alpha(root.tint, Theme.glassOpacity)
        leadingRadius: Theme.stickyRadius
        trailingRadius: Theme.stickyRadius
    }
    Rectangle {
        anchors.fill: parent
        radius: Theme.stickyRadius
        gradient: Gradient {
            GradientStop {
                position: 0
                color: Theme.glassLight
            }
            GradientStop {
                position: 0.4
                color: Theme.glassBody
            }
            GradientStop {
                position: 1
                color: Theme.glassBody
            }
        }
    }
    Rectangle {
        anchors.fill: parent
        radius: Theme.stickyRadius
        gradient: Gradient {
            GradientStop {
                position: 0.75
                color: "transparent"
            }
            GradientStop {
                position: 1
                color: Theme.glassShade
            }
        }
    }
    Rectangle {
        anchors.fill: parent
        radius: Theme.stickyRadius
        color: "transparent"
        border.width: Theme.hairlineWidth
        border.color: Theme.glassEdge
    }
}
