pragma ComponentBehavior: Bound

import QtQuick
import QtWebChannel // qmllint disable import
import QtWebEngine
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

        isFirstResponder: view.activeFocus

        onScriptRequested: (ticket, script) => view.runJavaScript(script, result => seam.finishScript(ticket, result))
        onScriptRequestedWithoutResult: script => view.runJavaScript(script)
        onLoadRequested: document => view.loadPage(document)
        onFocusRequested: view.forceActiveFocus()
        onLayoutRequested: view.layOutAgain()
    }

    WebEngineView {
        id: view

        property bool isLoadingPage: false

        function loadPage(document: string) {
            view.isLoadingPage = true;
            view.loadHtml(document, EditorProfile.baseUrl);
        }
        // Only another size makes the engine draw what it takes for drawn.
        function layOutAgain() {
            view.anchors.margins = -1;
            view.anchors.margins = 0;
            view.update();
        }

        anchors.fill: parent
        objectName: "editorWebView"
        backgroundColor: "transparent"
        profile: EditorProfile.profile as WebEngineProfile
        webChannel: WebChannel {
            Component.onCompleted: registerObject("host", seam.messages)
        }

        settings.localContentCanAccessRemoteUrls: false
        settings.localContentCanAccessFileUrls: true
        settings.javascriptCanOpenWindows: false
        settings.javascriptCanAccessClipboard: false
        settings.javascriptCanPaste: false
        settings.autoLoadIconsForPage: false
        settings.errorPageEnabled: false
        settings.pluginsEnabled: false
        settings.pdfViewerEnabled: false
        settings.hyperlinkAuditingEnabled: false
        settings.localStorageEnabled: false
        settings.dnsPrefetchEnabled: false
        settings.focusOnNavigationEnabled: false
        settings.showScrollBars: false

        // The view never navigates: it takes the page that it is given, and nothing after it.
        onNavigationRequested: request => {
            if (view.isLoadingPage && request.isMainFrame)
                request.accept();
            else
                request.reject();
        }
        onNewWindowRequested: request => {}
        onContextMenuRequested: request => request.accepted = true
        onFeaturePermissionRequested: (origin, feature) => view.grantFeaturePermission(origin, feature, false)
        onFileDialogRequested: request => request.dialogReject()
        onJavaScriptDialogRequested: request => request.dialogReject()
        onFullScreenRequested: request => request.reject()

        // A refused navigation ends as a failed load, too, and leaves the page as it was.
        onLoadingChanged: info => {
            if (!view.isLoadingPage || info.status === WebEngineView.LoadStartedStatus)
                return;
            view.isLoadingPage = false;
            if (info.status === WebEngineView.LoadSucceededStatus)
                seam.reportLoaded();
            else
                seam.reportLost("load, error " + info.errorCode);
        }
        onRenderProcessTerminated: (status, exitCode) => seam.reportLost("process, status " + status)

        // Of its own: those of the profile do not reach a process that takes a dead one's place.
        function insertScript(name: string, source: string, point: int) {
            const script = WebEngine.script();
            script.name = name;
            script.sourceCode = source;
            script.injectionPoint = point;
            script.worldId = WebEngineScript.MainWorld;
            view.userScripts.insert(script);
        }

        Component.onCompleted: {
            view.insertScript("channel", EditorProfile.channelScript, WebEngineScript.DocumentCreation);
            view.insertScript("page", EditorProfile.pageScript, WebEngineScript.DocumentReady);
        }
    }
}
