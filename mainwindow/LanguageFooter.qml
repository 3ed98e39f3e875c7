pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Plim.Shell

// The language of the interface, each by its own name.
Item {
    id: root

    implicitHeight: Theme.footerHeight

    Rectangle {
        width: parent.width
        height: Theme.hairlineWidth
        color: Theme.field
    }
    Row {
        x: Theme.margin + Theme.gap / 2
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.gap

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: "globe"
            size: Theme.iconSmall
            opacity: Theme.footerLabelOpacity
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: L10n.language
            color: Theme.ink
            opacity: Theme.footerLabelOpacity
            font: Theme.footerFont
        }
    }
    Row {
        anchors.right: parent.right
        anchors.rightMargin: Theme.margin
        anchors.verticalCenter: parent.verticalCenter

        Repeater {
            model: [{ value: "en", name: "English" }, { value: "pl", name: "Polski" }]

            T.RadioButton { // for its role: that of a control cannot be set everywhere
                id: choice

                required property var modelData
                readonly property bool isCurrent: LanguageManager.language === choice.modelData.value

                objectName: "language." + choice.modelData.value
                leftPadding: Theme.gap
                rightPadding: Theme.gap
                implicitWidth: choice.implicitContentWidth + choice.leftPadding + choice.rightPadding
                implicitHeight: Theme.tabHeight
                checkable: false
                hoverEnabled: true
                focusPolicy: Qt.TabFocus
                Accessible.role: Accessible.RadioButton
                Accessible.name: choice.modelData.name
                Accessible.description: L10n.language
                Accessible.checkable: true
                Accessible.checked: choice.isCurrent
                Accessible.onPressAction: choice.clicked()
                Accessible.onToggleAction: choice.clicked() // offered by its role, as the first one
                Keys.onReturnPressed: choice.clicked()
                Keys.onEnterPressed: choice.clicked()
                onClicked: LanguageManager.chooseLanguage(choice.modelData.value)

                contentItem: Text {
                    text: choice.modelData.name
                    color: Theme.ink
                    opacity: choice.isCurrent ? 1 : choice.hovered ? 0.85 : Theme.quietLanguageOpacity
                    font: choice.isCurrent ? Theme.currentLanguageFont : Theme.footerFont
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                }
                background: FocusRing {
                    isFocused: choice.activeFocus
                    radius: Theme.toolRadius
                }
            }
        }
    }
}
