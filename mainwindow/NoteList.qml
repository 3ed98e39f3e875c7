pragma ComponentBehavior: Bound

import QtQuick
import Plim.MainWindow
import Plim.Shell

// The notes of the selected tab: a colour marker, heading and preview each.
ListView {
    id: root

    required property ContentController content

    objectName: "noteList"
    model: root.content.notes
    clip: true
    spacing: 2
    boundsBehavior: Flickable.StopAtBounds
    currentIndex: root.content.selectedRow
    highlightMoveDuration: 0
    reuseItems: true
    Accessible.role: Accessible.List
    Accessible.name: SelectionManager.selectedTab === SidebarTab.Archive ? L10n.archiveTab : L10n.notesTab

    delegate: Rectangle {
        id: row

        required property int index
        required property string headingText
        required property string previewText
        required property color noteColor
        readonly property bool isSelected: ListView.isCurrentItem

        width: ListView.view.width
        height: 58
        radius: 8
        color: Qt.rgba(1, 1, 1, row.isSelected ? 0.16 : hover.hovered ? 0.07 : 0)
        Accessible.role: Accessible.ListItem
        Accessible.name: row.headingText + ", " + row.previewText
        Accessible.selected: row.isSelected
        Accessible.onPressAction: root.content.selectRow(row.index)

        HoverHandler {
            id: hover
        }
        TapHandler {
            onTapped: root.content.selectRow(row.index)
        }
        Rectangle {
            id: marker

            x: 10
            anchors.verticalCenter: parent.verticalCenter
            width: 4
            height: 34
            radius: 2
            color: row.noteColor
        }
        Column {
            anchors.left: marker.right
            anchors.leftMargin: 10
            anchors.right: parent.right
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            spacing: 3

            Text {
                width: parent.width
                text: row.headingText
                textFormat: Text.PlainText
                elide: Text.ElideRight
                maximumLineCount: 1
                color: "white"
                font.family: "Outfit"
                font.pixelSize: 15
                font.weight: Font.DemiBold
            }
            Text {
                width: parent.width
                text: row.previewText
                textFormat: Text.PlainText
                elide: Text.ElideRight
                maximumLineCount: 1
                color: "#c8ccd2"
                font.family: "Outfit"
                font.pixelSize: 13
            }
        }
    }

    Text {
        anchors.centerIn: parent
        visible: root.count === 0
        text: L10n.noNotes
        color: "#c8ccd2"
        font.family: "Outfit"
        font.pixelSize: 14
    }
}
