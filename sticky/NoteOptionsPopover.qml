pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Plim.Shell
import Plim.Sticky

// Colour and text size of a note, and what can be done with all sticky windows. An action that
// nobody has taken up is not offered.
PopoverWindow {
    id: root

    required property string noteColor ///< raw value; of an unknown one no swatch is marked
    required property string size ///< raw value
    property T.Action openNotebook: null
    property T.Action newSticky: null
    property T.Action sort: null
    property T.Action sortRandom: null
    property T.Action sortByColor: null
    property T.Action collapseAll: null
    property T.Action expandAll: null
    property bool showSortMenu: false
    readonly property bool offersSorting: root.sort !== null || root.sortRandom !== null || root.sortByColor !== null

    signal update(color: string)
    signal sizeChange(size: string)

    function runAndClose(action: T.Action): void {
        root.visible = false;
        action.trigger();
    }

    contentSize: Qt.size(column.width + 2 * Theme.margin, column.height + 2 * Theme.margin)
    onIsOpenChanged: root.showSortMenu = false

    WindowShape {
        window: root
        radius: Theme.sheetRadius
    }
    VisualEffectView {
        anchors.fill: parent
        material: VisualEffectView.Sheet
        tint: Theme.sheet
        leadingRadius: Theme.sheetRadius
        trailingRadius: Theme.sheetRadius

        Rectangle {
            anchors.fill: parent
            radius: Theme.sheetRadius
            color: "transparent"
            border.width: Theme.hairlineWidth
            border.color: Theme.sheetBorder
        }
    }
    Column {
        id: column

        x: Theme.margin
        y: Theme.margin
        width: sizes.width
        spacing: Theme.margin

        // Colours: a ring glides to the one that is chosen.
        Item {
            id: swatches

            readonly property int side: Theme.swatch + 4 * Theme.swatchRingWidth
            readonly property real step: (width - swatches.side) / (colors.count - 1)
            readonly property int current: NoteChoices.colorIndex(root.noteColor)

            width: parent.width
            height: swatches.side

            Rectangle {
                objectName: "swatchRing"
                visible: swatches.current >= 0
                x: swatches.current * swatches.step
                width: swatches.side
                height: swatches.side
                radius: swatches.side / 2
                color: "transparent"
                border.width: Theme.swatchRingWidth
                border.color: Theme.swatchRing

                Behavior on x {
                    NumberAnimation {
                        duration: Theme.glideDuration
                        easing.type: Easing.OutCubic
                    }
                }
            }
            Repeater {
                id: colors

                model: NoteChoices.colors

                T.RadioButton { // for its role: that of a control cannot be set everywhere
                    id: swatch

                    required property string modelData
                    required property int index

                    objectName: "swatch." + swatch.modelData
                    x: swatch.index * swatches.step
                    width: swatches.side
                    height: swatches.side
                    checkable: false
                    hoverEnabled: true
                    Accessible.role: Accessible.RadioButton
                    Accessible.name: L10n[swatch.modelData]
                    Accessible.checked: swatches.current === swatch.index
                    Accessible.onPressAction: swatch.clicked()
                    Accessible.onToggleAction: swatch.clicked() // offered by its role, as the first one
                    Keys.onReturnPressed: swatch.clicked()
                    Keys.onEnterPressed: swatch.clicked()
                    Keys.onLeftPressed: colors.itemAt(Math.max(0, swatch.index - 1)).forceActiveFocus(Qt.TabFocusReason)
                    Keys.onRightPressed: colors.itemAt(Math.min(colors.count - 1, swatch.index + 1)).forceActiveFocus(Qt.TabFocusReason)
                    onClicked: root.update(swatch.modelData)

                    contentItem: Item {
                        Rectangle {
                            anchors.centerIn: parent
                            width: Theme.swatch + (swatch.hovered ? 2 : 0)
                            height: width
                            radius: width / 2
                            color: NoteChoices.displayColor(swatch.modelData)
                        }
                    }
                    background: FocusRing {
                        anchors.margins: -Theme.focusRing
                        isFocused: swatch.activeFocus
                        ink: Theme.hit // white is the ring of the one that is chosen
                        radius: width / 2
                    }
                }
            }
        }

        // Text sizes: the highlight glides between the pills.
        Item {
            id: sizes

            readonly property int current: NoteChoices.textSizeIndex(root.size)

            width: pills.count * Theme.sizePillWidth
            height: Theme.sizePillHeight

            Rectangle {
                anchors.fill: parent
                radius: Theme.sizePillHeight / 2
                color: Theme.tabs
            }
            Rectangle {
                objectName: "sizePill"
                visible: sizes.current >= 0
                x: sizes.current * Theme.sizePillWidth
                width: Theme.sizePillWidth
                height: Theme.sizePillHeight
                radius: Theme.sizePillHeight / 2
                color: Theme.pill

                Behavior on x {
                    NumberAnimation {
                        duration: Theme.glideDuration
                        easing.type: Easing.OutCubic
                    }
                }
            }
            Repeater {
                id: pills

                model: NoteChoices.textSizes

                T.RadioButton {
                    id: pill

                    required property string modelData
                    required property int index

                    objectName: "size." + pill.modelData
                    x: pill.index * Theme.sizePillWidth
                    width: Theme.sizePillWidth
                    height: Theme.sizePillHeight
                    checkable: false
                    hoverEnabled: true
                    text: NoteChoices.textSizeLabels[pill.index]
                    Accessible.role: Accessible.RadioButton
                    Accessible.name: L10n.textSize + ": " + pill.text
                    Accessible.checked: sizes.current === pill.index
                    Accessible.onPressAction: pill.clicked()
                    Accessible.onToggleAction: pill.clicked()
                    Keys.onReturnPressed: pill.clicked()
                    Keys.onEnterPressed: pill.clicked()
                    Keys.onLeftPressed: pills.itemAt(Math.max(0, pill.index - 1)).forceActiveFocus(Qt.TabFocusReason)
                    Keys.onRightPressed: pills.itemAt(Math.min(pills.count - 1, pill.index + 1)).forceActiveFocus(Qt.TabFocusReason)
                    onClicked: root.sizeChange(pill.modelData)

                    contentItem: Text {
                        text: pill.text
                        color: Theme.ink
                        font: Theme.sizePillFont
                        horizontalAlignment: Text.AlignHCenter
                        verticalAlignment: Text.AlignVCenter
                    }
                    background: Rectangle {
                        radius: Theme.sizePillHeight / 2
                        color: pill.hovered && sizes.current !== pill.index ? Theme.field : "transparent"

                        FocusRing {
                            isFocused: pill.activeFocus
                            radius: parent.radius
                        }
                    }
                }
            }
        }

        Column {
            width: parent.width
            // Not by its visible children: of what is hidden no child counts as visible.
            visible: root.openNotebook !== null || root.newSticky !== null || root.offersSorting || root.collapseAll !== null || root.expandAll !== null
            spacing: 2

            OptionEntry {
                objectName: "option.notebook"
                width: parent.width
                visible: root.openNotebook !== null
                symbol: "book.closed.fill"
                text: L10n.notebook
                onClicked: root.runAndClose(root.openNotebook)
            }
            OptionEntry {
                objectName: "option.newSticky"
                width: parent.width
                visible: root.newSticky !== null
                symbol: "plus.rectangle.on.rectangle"
                text: L10n.newSticky
                onClicked: root.runAndClose(root.newSticky)
            }
            OptionEntry {
                objectName: "option.sort"
                width: parent.width
                visible: root.offersSorting
                symbol: "arrow.up.arrow.down"
                text: L10n.sort
                Accessible.checkable: true
                Accessible.checked: root.showSortMenu
                onClicked: {
                    root.showSortMenu = !root.showSortMenu;
                    if (root.sort)
                        root.sort.trigger();
                }
            }
            OptionEntry {
                objectName: "option.sortRandom"
                width: parent.width
                visible: root.showSortMenu && root.sortRandom !== null
                isSub: true
                symbol: "shuffle"
                text: L10n.sortRandomly
                onClicked: root.sortRandom.trigger()
            }
            OptionEntry {
                objectName: "option.sortByColor"
                width: parent.width
                visible: root.showSortMenu && root.sortByColor !== null
                isSub: true
                symbol: "paintpalette.fill"
                text: L10n.sortByColor
                onClicked: root.sortByColor.trigger()
            }
            OptionEntry {
                objectName: "option.collapseAll"
                width: parent.width
                visible: root.collapseAll !== null
                symbol: "arrow.up.to.line"
                text: L10n.collapse
                onClicked: root.collapseAll.trigger()
            }
            OptionEntry {
                objectName: "option.expandAll"
                width: parent.width
                visible: root.expandAll !== null
                symbol: "arrow.down.to.line"
                text: L10n.expand
                onClicked: root.expandAll.trigger()
            }
        }
    }
}
