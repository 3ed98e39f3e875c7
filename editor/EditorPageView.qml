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
        // The engine's own description, plugins.qmltypes, does not know its collection of scripts.
        view.userScripts.insert(EditorProfile.channelScript); // qmllint disable type
        view.userScripts.insert(EditorProfile.pageScript); // qmllint disable type
    }
    // The engine keeps them for a view that is gone, and may run them in one that comes later, beside
    // that one's own: what runs twice in a page cuts it off from its host.
    Component.onDestruction: {
        if (!view.isSpent) // in a process that comes after a lost one it would take the new view's
            view.userScripts.clear(); // qmllint disable type
    }
}
