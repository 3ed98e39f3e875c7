pragma ComponentBehavior: Bound

import QtQml.Models
import QtQuick
import QtWebEngine // qmllint disable import
import Plim.Floor

// Windows that hold nothing but an empty page to type into.
Instantiator {
    id: root

    required property ReadyPages pages
    readonly property int columns: 6
    readonly property int step: 8 // between windows
    readonly property string page: `<!doctype html><body><style>div { outline: none; }</style>
        <div contenteditable></div><script>
        const region = document.querySelector('div');
        region.oninput = () => console.info('typed');
        addEventListener('load', () => {
            region.focus();
            // A caret in it is what a key needs.
            if (document.activeElement === region && region.contains(getSelection().anchorNode))
                console.info('ready');
        });
        </script>`
    readonly property WebEngineProfile profile: WebEngineProfile {
        offTheRecord: true
    }

    model: root.pages.count
    delegate: Window {
        id: window

        required property int index

        x: (window.index % root.columns) * (width + root.step)
        y: Math.floor(window.index / root.columns) * (height + root.step)
        width: 300
        height: 340
        visible: true
        title: "Floor " + (window.index + 1)
        color: "transparent"
        flags: Qt.Window | Qt.FramelessWindowHint

        WebEngineView {
            id: view

            anchors.fill: parent
            focus: true
            backgroundColor: "transparent"
            profile: root.profile
            onJavaScriptConsoleMessage: (level, message) => root.pages.receive(window.index, message)
            Component.onCompleted: view.loadHtml(root.page)
        }
    }
}
