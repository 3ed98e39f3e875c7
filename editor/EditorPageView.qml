pragma ComponentBehavior: Bound

import QtQuick
import QtWebChannel // qmllint disable import
import QtWebEngine
import Plim.Editor

// The page's web view. One that has lost its process is not to be used again: what it was told, its
// scripts, its channel, its background, may not reach the next process.
WebEngineView {
    id: view

    required property EditorWebView seam
    property bool isLoadingPage: false
    property bool isSpent: false

    function loadPage(document: string) {
        view.isLoadingPage = true;
        view.loadHtml(document, EditorProfile.baseUrl);
    }
    function insertScript(name: string, source: string, point: int) {
        const script = WebEngine.script();
        script.name = name;
        script.sourceCode = source;
        script.injectionPoint = point;
        script.worldId = WebEngineScript.MainWorld;
        view.userScripts.insert(script);
    }

    objectName: "editorWebView"
    backgroundColor: "transparent"
    profile: EditorProfile.profile as WebEngineProfile
    webChannel: WebChannel {
        Component.onCompleted: registerObject("host", view.seam.messages)
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
            view.seam.reportLoaded();
        else
            view.seam.reportLost("load, error " + info.errorCode);
    }
    onRenderProcessTerminated: (status, exitCode) => {
        view.isSpent = true;
        view.seam.reportLost("process, status " + status);
    }
    Component.onCompleted: {
        view.insertScript("channel", EditorProfile.channelScript, WebEngineScript.DocumentCreation);
        view.insertScript("page", EditorProfile.pageScript, WebEngineScript.DocumentReady);
    }
}
