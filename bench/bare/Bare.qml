import QtQuick

// A window with nothing in it, as large as Plim's main window and of the same kind.
Window {
    width: 1100
    height: 700
    visible: true
    title: "Bare"
    color: "transparent"
    flags: Qt.Window | Qt.FramelessWindowHint

    Rectangle {
        anchors.fill: parent
        color: "white"
    }
}
