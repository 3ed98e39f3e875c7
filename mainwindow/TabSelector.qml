pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Plim.MainWindow
import Plim.Shell

// Notes or archive: a pill glides to the tab that is shown.
Item {
    id: root

    required property int selectedTab

    signal tabSelected(tab: int)

    objectName: "tabSelector"
    implicitWidth: tabs.count * Theme.tabWidth
    implicitHeight: Theme.tabHeight
    Accessible.role: Accessible.PageTabList
    Accessible.name: L10n.notesTab + ", " + L10n.archiveTab

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: Theme.tabs
    }
    Rectangle {
        objectName: "tabPill"
        x: root.selectedTab * Theme.tabWidth
        width: Theme.tabWidth
        height: parent.height
        radius: height / 2
        color: Theme.pill

        Behavior on x {
            NumberAnimation {
                duration: Theme.glideDuration
                easing.type: Easing.OutCubic
            }
        }
    }
    Repeater {
        id: tabs

        model: [SidebarTab.Notes, SidebarTab.Archive]

        T.TabButton { // for its role: that of a control cannot be set everywhere
            id: tab

            required property int modelData
            required property int index
            readonly property bool isCurrent: root.selectedTab === tab.modelData
            readonly property string localizedTitle: tab.modelData === SidebarTab.Archive ? L10n.archiveTab : L10n.notesTab
            readonly property string helpText: tab.modelData === SidebarTab.Archive ? L10n.showArchive : L10n.showNotes

            objectName: tab.modelData === SidebarTab.Archive ? "archiveTab" : "notesTab"
            x: tab.index * Theme.tabWidth
            width: Theme.tabWidth
            height: root.height
            checkable: false
            hoverEnabled: true
            focusPolicy: Qt.TabFocus
            text: tab.localizedTitle
            Accessible.role: Accessible.PageTab
            Accessible.name: tab.text
            Accessible.description: tab.helpText
            Accessible.selectable: true
            Accessible.selected: tab.isCurrent
            Accessible.onPressAction: tab.clicked()
            Keys.onReturnPressed: tab.clicked()
            Keys.onEnterPressed: tab.clicked()
            Keys.onLeftPressed: tabs.itemAt(Math.max(0, tab.index - 1)).forceActiveFocus(Qt.TabFocusReason)
            Keys.onRightPressed: tabs.itemAt(Math.min(tabs.count - 1, tab.index + 1)).forceActiveFocus(Qt.TabFocusReason)
            onClicked: root.tabSelected(tab.modelData)
            onHoveredChanged: tab.hovered ? HelpTip.show(tab, tab.helpText) : HelpTip.hide(tab)
            onHelpTextChanged: HelpTip.update(tab, tab.helpText)
            onPressed: HelpTip.hide(tab)

            contentItem: Text {
                text: tab.text
                color: Theme.ink
                opacity: tab.isCurrent ? 1 : tab.hovered ? 0.85 : Theme.quietTabOpacity
                font: Theme.tabFont
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter

                Behavior on opacity {
                    NumberAnimation {
                        duration: Theme.hoverDuration
                    }
                }
            }
            background: FocusRing {
                isFocused: tab.activeFocus
                radius: tab.height / 2
            }
        }
    }
}
