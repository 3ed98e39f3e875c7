import QtQuick
import QtQuick.Templates as T
import Plim.Shell

// A slim bar that is seen while there is something to scroll.
T.ScrollBar {
    id: root

    implicitWidth: Theme.scrollBarWidth
    padding: 2
    visible: root.size < 1
    minimumSize: 0.06
    Accessible.ignored: true

    contentItem: Rectangle {
        implicitWidth: Theme.scrollBarWidth - 4
        radius: width / 2
        color: Theme.scrollThumb
        opacity: root.pressed || root.hovered ? 1 : root.active ? 0.8 : 0.4

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.fadeDuration
            }
        }
    }
}
