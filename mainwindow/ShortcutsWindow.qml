pragma ComponentBehavior: Bound

import QtQuick
import Plim.MainWindow
import Plim.Shell

// Every key there is, by the menu or the place that it belongs to.
InfoWindow {
    id: root

    required property Commands commands

    objectName: "shortcutsWindow"
    title: L10n.keyboardShortcuts
    width: Theme.shortcutsWidth
    height: Math.min(Theme.shortcutsHeight, Screen.desktopAvailableHeight)

    Flickable {
        id: flickable

        anchors.fill: parent
        contentHeight: columns.height
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        focus: true
        Keys.onUpPressed: flickable.contentY = Math.max(0, flickable.contentY - Theme.wheelStep)
        Keys.onDownPressed: flickable.contentY = Math.max(0, Math.min(flickable.contentHeight - flickable.height, flickable.contentY + Theme.wheelStep))

        Row {
            id: columns

            width: flickable.width
            spacing: 2 * Theme.sheetPadding

            Repeater {
                model: root.commands ? root.commands.keyColumns : [] // none while the program ends

                Column {
                    id: column

                    required property var modelData

                    width: (flickable.width - columns.spacing) / 2
                    spacing: Theme.sheetPadding

                    Repeater {
                        model: column.modelData

                        Column {
                            id: group

                            required property var modelData

                            width: column.width
                            spacing: Theme.gap / 2

                            Text {
                                text: group.modelData.title
                                color: Theme.secondaryInk
                                font: Theme.tabFont
                                Accessible.role: Accessible.Heading
                                Accessible.name: text
                            }
                            Repeater {
                                model: group.modelData.rows

                                Item {
                                    id: row

                                    required property var modelData

                                    width: group.width
                                    height: Theme.shortcutRowHeight
                                    Accessible.role: Accessible.StaticText
                                    Accessible.name: row.modelData.title + ": " + row.modelData.keys.join(", ")

                                    Text {
                                        anchors.verticalCenter: parent.verticalCenter
                                        width: parent.width - keys.width - Theme.gap
                                        text: row.modelData.title
                                        elide: Text.ElideRight
                                        color: Theme.ink
                                        font: Theme.bodyFont
                                    }
                                    Row {
                                        id: keys

                                        anchors.right: parent.right
                                        anchors.verticalCenter: parent.verticalCenter
                                        spacing: Theme.gap / 2

                                        Repeater {
                                            model: row.modelData.keys

                                            Rectangle {
                                                id: key

                                                required property string modelData

                                                width: keyText.width + Theme.margin
                                                height: Theme.shortcutRowHeight - 4
                                                radius: Theme.toolRadius
                                                color: Theme.field

                                                Text {
                                                    id: keyText

                                                    anchors.centerIn: parent
                                                    text: key.modelData
                                                    color: Theme.ink
                                                    font: Theme.tipFont
                                                }
                                            }
                                        }
                                    }
                                }
                            }
                        }
                    }
                }
            }
        }
    }
}
