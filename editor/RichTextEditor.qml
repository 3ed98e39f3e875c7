pragma ComponentBehavior: Bound

import QtQuick
import Plim.Editor
import Plim.Shell

// The editor page in its web view. What happens between page and store is the coordinator's.
Item {
    id: root

    property alias value: coordinator.value
    property alias controller: coordinator.controller
    readonly property alias coordinator: coordinator

    signal edited(noteID: var, html: string)
    // The pointer came over a link that Ctrl+click would open; an empty one: it left it.
    signal linkHovered(link: url)

    Accessible.role: Accessible.Document
    Accessible.name: L10n.noteText

    RichTextEditorCoordinator {
        id: coordinator

        webView: seam
        onChange: (noteID, html) => root.edited(noteID, html)
        onHoveredLinkChanged: root.linkHovered(coordinator.hoveredLink)
        onLinkActivated: url => Qt.openUrlExternally(url)
    }

    EditorWebView {
        id: seam

        isFirstResponder: page.item?.activeFocus ?? false

        onScriptRequested: (ticket, script) => page.item.runJavaScript(script, result => seam.finishScript(ticket, result))
        onScriptRequestedWithoutResult: script => page.item.runJavaScript(script)
        onLoadRequested: document => {
            if (page.item.isSpent || page.isUnfit)
                page.renew();
            page.item.loadPage(document);
        }
        onFocusRequested: (page.item as Item).forceActiveFocus()
        onLayoutRequested: page.layOutAgain()
        onRenewalRequested: page.isUnfit = true
    }

    HeldKeys {
        window: root.Window.window
        page: page
        isHolding: coordinator.isCaretAwaited && root.enabled
    }

    Loader {
        id: page

        property bool isUnfit: false ///< its view is not to be used again

        function renew() {
            page.isUnfit = false;
            EditorProfile.prepare();
            page.source = "";
            page.setSource("EditorPageView.qml", {
                seam: seam
            });
        }
        // Only another size makes the engine draw what it takes for drawn.
        function layOutAgain() {
            page.anchors.margins = -1;
            page.anchors.margins = 0;
            (page.item as Item).update();
        }

        anchors.fill: parent
        Component.onCompleted: page.renew()
    }
}
