pragma ComponentBehavior: Bound

import QtQuick
import Plim.Shell

// One note of the list: its colour or its tick, heading, preview and time, and on hover what can be
// done with it.
Item {
    id: root

    required property string noteID
    required property string titleText
    required property string titleMarkup ///< the heading with the search's hits marked; empty without
    required property string previewText
    required property string previewMarkup
    required property string timestampText
    required property color noteColor
    required property string colorName
    required property bool isArchived
    required property bool isSelected ///< open in the editor
    required property bool isSticky
    required property bool isDragging
    required property bool isSelectionMode
    required property bool isCheckmarked
    required property bool showTopLine
    required property bool showBottomLine
    property bool isPointedOut: false ///< the user's eye is led to it
    property real glow: 0 ///< how strongly, from 0 to 1
    property bool isReordering: false ///< this or another row is being dragged
    property bool hasKeyboard: false ///< the list's keys act on this row
    readonly property bool isHovered: hover.hovered && !root.isReordering
    readonly property bool offersActions: (root.isHovered || root.hasKeyboard) && !root.isSelectionMode
    readonly property string spokenText: root.titleText + ", " + root.previewText + ", " + root.timestampText + ", " + root.colorName + (root.isSticky ? ", " + L10n.stickyIsOpen : "")
    readonly property real actionsWidth: root.offersActions || root.isSticky && !root.isSelectionMode ? buttons.width : 0

    signal selected()
    signal selectionToggled()
    signal archiveRequested()
    signal stickyRequested()
    signal deleteRequested()

    function activate(): void {
        if (root.isSelectionMode)
            root.selectionToggled();
        else
            root.selected();
    }

    implicitHeight: Theme.rowHeight
    opacity: root.isDragging ? Theme.ghostOpacity : 1
    Accessible.role: Accessible.ListItem
    Accessible.name: root.spokenText
    Accessible.selectable: true
    Accessible.selected: root.isSelected
    Accessible.checkable: root.isSelectionMode
    Accessible.checked: root.isCheckmarked
    Accessible.focusable: true
    Accessible.focused: root.hasKeyboard
    Accessible.onPressAction: root.activate()

    component Line: Rectangle {
        x: Theme.gap
        width: root.width - 2 * Theme.gap
        height: Theme.dropLineHeight
        radius: height / 2
        color: Theme.dropLine
    }

    HoverHandler {
        id: hover
    }
    TapHandler {
        gesturePolicy: TapHandler.DragThreshold
        onTapped: eventPoint => {
            // A near miss of a button is not meant for the row.
            if (!root.offersActions || eventPoint.position.x < buttons.x)
                root.activate();
        }
    }

    Rectangle {
        id: ground

        anchors.fill: parent
        anchors.leftMargin: Theme.gap
        anchors.rightMargin: Theme.gap
        anchors.topMargin: 1
        anchors.bottomMargin: 1
        radius: Theme.rowRadius
        color: root.isDragging ? Theme.rowGhost : root.isSelected ? Theme.rowSelected : root.isHovered ? Theme.rowHovered : "transparent"

        Behavior on color {
            ColorAnimation {
                duration: Theme.hoverDuration
                easing.type: Easing.OutQuad
            }
        }

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            visible: root.isSelectionMode && root.isCheckmarked
            color: Theme.rowTicked
        }
        Rectangle {
            objectName: "rowGlow"
            anchors.fill: parent
            radius: parent.radius
            visible: root.isPointedOut
            opacity: root.glow
            // A ticked row's ground is light already, and its texts bear no more.
            color: root.isSelectionMode && root.isCheckmarked ? "transparent" : Qt.alpha(root.noteColor, Theme.glowOpacity)
            border.width: Theme.glowRing
            border.color: root.noteColor
        }
        FocusRing {
            isFocused: root.hasKeyboard
            radius: parent.radius
        }
    }

    Item {
        id: marker

        anchors.left: ground.left
        anchors.leftMargin: Theme.margin
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.marker
        height: Theme.marker

        Rectangle {
            anchors.fill: parent
            radius: width / 2
            visible: !root.isSelectionMode
            color: root.noteColor
        }
        Symbol {
            anchors.fill: parent
            visible: root.isSelectionMode
            name: root.isCheckmarked ? "checkmark.circle.fill" : "circle"
            size: Theme.marker
        }
    }
    Column {
        anchors.left: marker.right
        anchors.leftMargin: Theme.margin
        anchors.right: ground.right
        anchors.rightMargin: Theme.margin + root.actionsWidth
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Text {
            objectName: "rowTitle"
            width: parent.width
            text: root.titleMarkup !== "" ? root.titleMarkup : root.titleText
            textFormat: root.titleMarkup !== "" ? Text.StyledText : Text.PlainText
            elide: Text.ElideRight
            maximumLineCount: 1
            wrapMode: Text.NoWrap
            horizontalAlignment: Text.AlignLeft
            color: Theme.ink
            font: Theme.rowTitleFont
        }
        Text {
            objectName: "rowPreview"
            width: parent.width
            text: root.previewMarkup !== "" ? root.previewMarkup : root.previewText
            textFormat: root.previewMarkup !== "" ? Text.StyledText : Text.PlainText
            elide: Text.ElideRight
            maximumLineCount: 1
            wrapMode: Text.NoWrap
            horizontalAlignment: Text.AlignLeft
            color: Theme.ink
            font: Theme.rowPreviewFont
        }
        Text {
            objectName: "rowTime"
            width: parent.width
            text: root.timestampText
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: Theme.ink
            opacity: root.isSelectionMode && root.isCheckmarked ? Theme.tickedTimeOpacity : Theme.timeOpacity
            font: Theme.rowTimeFont
        }
    }

    Row {
        id: buttons

        anchors.right: ground.right
        anchors.rightMargin: Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        visible: !root.isSelectionMode
        spacing: Theme.gap / 2

        component RowButton: SymbolButton {
            property bool isOffered: false

            activeFocusOnTab: root.hasKeyboard
            focusPolicy: root.hasKeyboard ? Qt.TabFocus : Qt.NoFocus
            enabled: isOffered
            opacity: isOffered ? 1 : 0
            Accessible.ignored: !isOffered

            Behavior on opacity {
                NumberAnimation {
                    duration: Theme.buttonFadeDuration
                    easing.type: Easing.InOutQuad
                }
            }
        }

        RowButton {
            objectName: "rowSticky"
            anchors.verticalCenter: parent.verticalCenter
            isOffered: root.isSticky || root.offersActions
            side: Theme.stickyButton
            radius: Theme.stickyButton / 2
            symbol: root.isSticky ? "arrow.down.left" : "arrow.up.right"
            symbolSize: Theme.icon
            restFill: Qt.alpha(Theme.ink, Theme.stickyFillOpacity)
            hoverFill: Qt.alpha(Theme.ink, Theme.stickyHoverOpacity)
            helpText: root.isSticky ? L10n.stickyIsOpen : L10n.makeSticky
            onClicked: root.stickyRequested()
        }
        RowButton {
            objectName: "rowArchive"
            anchors.verticalCenter: parent.verticalCenter
            isOffered: root.offersActions
            side: Theme.rowButton
            symbol: root.isArchived ? "tray.and.arrow.up" : "archivebox"
            symbolSize: Theme.icon
            helpText: root.isArchived ? L10n.restoreNote : L10n.archiveNote
            onClicked: root.archiveRequested()
        }
        RowButton {
            objectName: "rowDelete"
            anchors.verticalCenter: parent.verticalCenter
            isOffered: root.offersActions
            side: Theme.rowButton
            symbol: "trash"
            symbolSize: Theme.icon
            helpText: L10n.deleteNote
            onClicked: root.deleteRequested()
        }
    }

    Line {
        objectName: "topLine"
        visible: root.showTopLine
        y: 0
    }
    Line {
        objectName: "bottomLine"
        visible: root.showBottomLine
        y: root.height - height
    }
}
