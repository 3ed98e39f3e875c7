pragma ComponentBehavior: Bound

import QtQuick
import QtQml
import Plim.Shell

// Listens to the commands' keys. Those that are good everywhere are heard in the sticky windows, too;
// those of the page are not heard here: it is faster than any menu.
Instantiator {
    id: root

    required property Commands commands ///< or null
    required property bool isListening

    model: root.commands ? root.commands.keys : []

    delegate: Shortcut {
        id: shortcut

        required property var modelData

        sequences: shortcut.modelData.sequences
        context: shortcut.modelData.place === CommandKeys.Everywhere ? Qt.ApplicationShortcut : Qt.WindowShortcut
        enabled: root.isListening && shortcut.modelData.place !== CommandKeys.Editor
        onActivated: root.commands.run(shortcut.modelData.id)
    }
}
