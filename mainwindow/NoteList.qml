pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Plim.MainWindow
import Plim.Shell
import Plim.Sticky

// The rows of the list, by mouse, wheel and keyboard.
FocusScope {
    id: root

    required property ContentController content
    readonly property alias list: list
    readonly property alias count: list.count

    // The note that the list points out for a moment, and how strongly.
    property string pointedOutID: ""
    property real glow: 0

    signal deleteRequested(noteID: string)

    // Brings the keyboard to the row that is open in the editor, else to the first.
    function enter(): void {
        if (list.currentIndex < 0)
            list.currentIndex = Math.max(0, root.content.selectedRow);
        list.forceActiveFocus(Qt.TabFocusReason);
    }
    function showRow(row: int): void {
        if (row < 0)
            return;
        list.currentIndex = row;
        list.positionViewAtIndex(row, ListView.Contain);
    }
    // Without taking the keyboard there.
    function pointOut(row: int, noteID: string): void {
        list.positionViewAtIndex(row, ListView.Contain);
        root.pointedOutID = noteID;
        pointing.restart();
    }

    Connections {
        target: SelectionManager

        function onSelectedNoteIDChanged() {
            root.showRow(root.content.selectedRow);
        }
    }

    Connections {
        target: root.content.putAwayHint

        function onPointedOut(row, noteID) {
            root.pointOut(row, noteID);
        }
    }
    // The list's and not the row's: a row that is scrolled out of sight is soon another note's.
    SequentialAnimation {
        id: pointing

        onFinished: root.pointedOutID = ""

        NumberAnimation {
            target: root
            property: "glow"
            to: 1
            duration: Theme.glowInDuration
            easing.type: Easing.OutCubic
        }
        PauseAnimation {
            duration: Theme.glowTime - Theme.glowInDuration - Theme.glowOutDuration
        }
        NumberAnimation {
            target: root
            property: "glow"
            to: 0
            duration: Theme.glowOutDuration
            easing.type: Easing.InOutQuad
        }
    }

    ListView {
        id: list

        readonly property NoteRow currentRow: list.currentItem as NoteRow
        readonly property int rowsPerPage: Math.max(1, Math.floor(list.height / Theme.rowHeight) - 1)

        // Which note is at that height of the content; none is an empty text.
        function noteAt(y: real): string {
            const row = list.itemAt(list.width / 2, y) as NoteRow;
            return row ? row.noteID : "";
        }
        function scrollBy(distance: real): void {
            const top = list.originY;
            const bottom = Math.max(top, top + list.contentHeight - list.height);
            list.contentY = Math.max(top, Math.min(bottom, list.contentY + distance));
        }
        function moveCurrent(rows: int): void {
            if (!list.currentRow)
                return;
            root.content.moveNoteBy(list.currentRow.noteID, rows);
            list.forceLayout(); // the list scrolls after another current row, but not after one that was moved
            list.positionViewAtIndex(list.currentIndex, ListView.Contain);
        }

        objectName: "noteList"
        anchors.fill: parent
        focus: true
        activeFocusOnTab: true
        model: root.content.filteredNotes
        clip: true
        interactive: false // a drag moves a note, not the list
        keyNavigationEnabled: true
        currentIndex: -1
        highlightFollowsCurrentItem: true
        highlightMoveDuration: Theme.hoverDuration
        highlightMoveVelocity: -1
        highlightResizeDuration: 0
        boundsBehavior: Flickable.StopAtBounds
        reuseItems: true
        cacheBuffer: 0 // rows made ahead may be gone when they are ready, which Qt warns of
        Accessible.role: Accessible.List
        Accessible.name: SelectionManager.selectedTab === SidebarTab.Archive ? L10n.archiveTab : L10n.notesTab
        T.ScrollBar.vertical: ListScrollBar {}

        Keys.onPressed: event => {
            const isAlt = event.modifiers & Qt.AltModifier;
            event.accepted = true;
            if (event.key === Qt.Key_Up && isAlt)
                list.moveCurrent(-1);
            else if (event.key === Qt.Key_Down && isAlt)
                list.moveCurrent(1);
            else if (event.key === Qt.Key_Home)
                list.currentIndex = Math.min(0, list.count - 1);
            else if (event.key === Qt.Key_End)
                list.currentIndex = list.count - 1;
            else if (event.key === Qt.Key_PageUp)
                list.currentIndex = Math.max(Math.min(0, list.count - 1), list.currentIndex - list.rowsPerPage);
            else if (event.key === Qt.Key_PageDown)
                list.currentIndex = Math.min(list.count - 1, list.currentIndex + list.rowsPerPage);
            else if (!list.currentRow)
                event.accepted = false;
            else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter)
                list.currentRow.activate();
            else if (event.key === Qt.Key_Space && root.content.multiSelection.isSelectionMode)
                list.currentRow.selectionToggled();
            else if (event.key === Qt.Key_Delete || event.key === Qt.Key_Backspace)
                root.deleteRequested(list.currentRow.noteID);
            else
                event.accepted = false;
        }

        move: Transition {
            NumberAnimation {
                property: "y"
                duration: Theme.glideDuration
                easing.type: Easing.OutCubic
            }
        }
        moveDisplaced: Transition {
            NumberAnimation {
                property: "y"
                duration: Theme.glideDuration
                easing.type: Easing.OutCubic
            }
        }

        delegate: NoteRow {
            id: row

            required property int index

            objectName: "noteRow"
            width: list.width
            isSelected: row.noteID === SelectionManager.selectedNoteID
            isSticky: StickyNoteManager.activeNoteIDs.contains(row.noteID)
            isDragging: row.isReordering && root.content.reordering.state.draggedID === row.noteID
            isReordering: root.content.reordering.state.isDragging
            isSelectionMode: root.content.multiSelection.isSelectionMode
            isCheckmarked: root.content.multiSelection.selectedIDs.contains(row.noteID)
            isPointedOut: root.pointedOutID === row.noteID
            glow: root.glow
            showTopLine: root.content.reordering.topLineID === row.noteID
            showBottomLine: root.content.reordering.bottomLineID === row.noteID
            hasKeyboard: list.activeFocus && ListView.isCurrentItem && InputModality.isKeyboard
            // A row that left the list may be kept for later, and would go on being drawn.
            ListView.onPooled: row.visible = false
            ListView.onReused: row.visible = true
            onSelected: {
                list.currentIndex = row.index;
                root.content.selectNote(row.noteID);
            }
            onSelectionToggled: {
                list.currentIndex = row.index;
                root.content.multiSelection.toggleSelection(row.noteID);
            }
            // The row goes away, and the keyboard is not to go with its button.
            onArchiveRequested: {
                if (row.hasKeyboard)
                    list.forceActiveFocus(Qt.OtherFocusReason);
                root.content.archiveNote(row.noteID);
            }
            onStickyRequested: root.content.makeSticky(row.noteID)
            onDeleteRequested: root.deleteRequested(row.noteID)
        }
    }
    WheelHandler {
        target: null
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onWheel: event => {
            const pixels = event.pixelDelta.y;
            list.scrollBy(pixels !== 0 ? -pixels : -event.angleDelta.y / 120 * Theme.wheelStep);
        }
    }
    // On the list and not on its rows: the row that is dragged may scroll out of sight.
    DragHandler {
        id: gesture

        property string noteID: ""
        property point start

        // No property: as one it would be a step behind when the centroid tells of its change.
        function location(): point {
            return Qt.point(gesture.centroid.position.x, gesture.centroid.position.y + list.contentY);
        }
        function giveUp(): void {
            gesture.noteID = "";
            root.content.reordering.cancelDrag();
        }
        function follow(): void {
            if (!gesture.active || gesture.noteID === "")
                return;
            root.content.reordering.layOutRows(list.originY, Theme.rowHeight, list.width);
            root.content.reordering.drag(gesture.noteID, gesture.start, gesture.location());
            DragOverlayManager.corner = list.contentItem.mapToGlobal(root.content.reordering.cardCorner());
        }

        target: null
        dragThreshold: Theme.dragThreshold
        acceptedButtons: Qt.LeftButton
        grabPermissions: PointerHandler.CanTakeOverFromHandlersOfDifferentType | PointerHandler.ApprovesTakeOverByHandlersOfDifferentType
        onActiveChanged: {
            if (gesture.active) {
                const pressed = gesture.centroid.pressPosition;
                gesture.start = Qt.point(pressed.x, pressed.y + list.contentY);
                gesture.noteID = list.noteAt(gesture.start.y);
                gesture.follow();
            }
        }
        onCentroidChanged: gesture.follow()
        // Both come after the gesture has become inactive, which alone does not say how it ended.
        onGrabChanged: transition => {
            if (transition !== PointerDevice.UngrabExclusive)
                return;
            gesture.noteID = "";
            root.content.reordering.endDrag();
        }
        onCanceled: gesture.giveUp()
    }
    Connections {
        target: list
        enabled: gesture.active

        function onContentYChanged() {
            gesture.follow();
        }
    }
    Connections {
        target: root.content.filteredNotes
        enabled: gesture.active

        function onLayoutChanged() {
            gesture.follow();
        }
        function onRowsInserted() {
            gesture.follow();
        }
        function onRowsRemoved() {
            gesture.follow();
        }
    }
    Shortcut {
        sequence: "Esc"
        enabled: gesture.active && gesture.noteID !== ""
        onActivated: gesture.giveUp()
    }
    // A note held near the list's edge scrolls it.
    FrameAnimation {
        running: gesture.active && gesture.noteID !== "" && speed !== 0

        readonly property real speed: root.content.reordering.scrollSpeed(gesture.centroid.position.y, list.height)

        onTriggered: list.scrollBy(speed * frameTime)
    }
}
