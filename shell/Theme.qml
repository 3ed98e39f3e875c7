pragma Singleton

import QtQuick
import Plim.Shell

// Every colour, size, radius, duration and font of the interface. What is translucent lies on what
// stands behind it; nothing is drawn fainter than its text can bear.
QtObject {
    id: root

    // Surfaces
    readonly property color sidebar: Qt.alpha("#22252b", 0.95)
    readonly property color emptyPane: "#2d3138"
    readonly property color hairline: Qt.alpha("white", 0.14)
    readonly property color dim: Qt.alpha("black", 0.45)
    readonly property color sheet: "#2f333b"
    readonly property color sheetBorder: Qt.alpha("white", 0.16)
    readonly property color tip: "#16181c"
    readonly property color card: Qt.alpha("white", 0.98)
    readonly property color cardBorder: Qt.alpha("white", 0.18)
    readonly property color cardShadow: Qt.alpha("black", 0.45)
    readonly property color cardInk: "#1c1c1e"

    // Ink on the dark surfaces
    readonly property color ink: "white"
    readonly property real timeOpacity: 0.6
    readonly property real tickedTimeOpacity: 0.75 // a ticked row's ground is lighter
    readonly property real quietTabOpacity: 0.6
    readonly property real quietLanguageOpacity: 0.5
    readonly property real footerLabelOpacity: 0.6
    readonly property real placeholderOpacity: 0.65
    readonly property color secondaryInk: Qt.alpha("white", 0.7)
    readonly property color hit: "#ffd66b"
    readonly property color accent: "#ffffff"
    readonly property color destructive: "#ffaeb2"
    readonly property color destructiveFill: "#c93540"
    readonly property color confirmFill: "#2a68cb"

    // Grounds on the dark surfaces
    readonly property color pill: Qt.alpha("white", 0.16)
    readonly property color tabs: Qt.alpha("black", 0.22)
    readonly property color field: Qt.alpha("white", 0.08)
    readonly property color fieldFocused: Qt.alpha("white", 0.12)
    readonly property color buttonFill: Qt.alpha("white", 0.08)
    readonly property color hoverFill: Qt.alpha("white", 0.08)
    readonly property color pressedFill: Qt.alpha("black", 0.18) // a lighter one would leave texts too faint
    readonly property color rowSelected: Qt.alpha("black", 0.22)
    readonly property color rowHovered: Qt.alpha("black", 0.15)
    readonly property color rowTicked: Qt.alpha("white", 0.16)
    readonly property color rowGhost: Qt.alpha("white", 0.1)
    readonly property real ghostOpacity: 0.15
    readonly property real glowOpacity: 0.14 // of a note's colour on its row; more would leave its time too faint
    readonly property real stickyFillOpacity: 0.18
    readonly property real stickyHoverOpacity: 0.28
    readonly property color dropLine: "white"
    readonly property color scrollThumb: Qt.alpha("white", 0.3)

    // Ink on a note's colour
    readonly property real toolOpacity: 0.55
    readonly property real hoveredToolOpacity: 0.65 // on toolHoverFill
    readonly property real litToolOpacity: 0.9
    readonly property color toolInk: "black"
    readonly property color litFill: Qt.alpha("black", 0.14)
    readonly property color toolHoverFill: Qt.alpha("black", 0.07)
    readonly property color toolSeparator: Qt.alpha("black", 0.15)
    readonly property color toolRing: "black"
    readonly property color swatchRing: "white"
    readonly property color optionFill: Qt.alpha("black", 0.08)
    readonly property real pinnedOpacity: 0.75
    readonly property real disabledOpacity: 0.35
    readonly property color capsuleInk: Qt.alpha("black", 0.8)

    // The row of menus, on a note's colour or on the empty pane, and the menus themselves
    readonly property real menuOpacity: 0.78
    readonly property real litMenuOpacity: 1
    readonly property real hoveredMenuFill: 0.07
    readonly property real openMenuFill: 0.12
    readonly property color menuBorder: "#484c53"
    readonly property color menuHover: "#444952"
    readonly property color menuDisabledInk: "#94979c"
    readonly property color menuSymbolInk: Qt.alpha("white", 0.75)

    // The glass of a sticky card, drawn in this order. Whatever stands behind it, black ink on it
    // keeps 4.5 : 1.
    readonly property real glassOpacity: 0.93
    readonly property color glassLight: Qt.alpha("white", 0.42)
    readonly property color glassBody: Qt.alpha("white", 0.12)
    readonly property color glassShade: Qt.alpha("black", 0.02)
    readonly property color glassEdge: Qt.alpha("white", 0.55)
    readonly property color stickyShadow: Qt.alpha("black", 0.42)

    // Sizes, in points
    readonly property int windowWidth: 1100
    readonly property int windowHeight: 700
    readonly property int minimumWindowWidth: 900
    readonly property int minimumWindowHeight: 560
    readonly property real sidebarShare: 0.4
    readonly property int resizeEdge: 6
    readonly property int windowRadius: 12
    readonly property int hairlineWidth: 1
    readonly property int gap: 8
    readonly property int margin: 12
    readonly property int headerHeight: 50
    readonly property int headerButton: 26
    readonly property int tabWidth: 90
    readonly property int tabHeight: 26
    readonly property int fieldInsetX: 10
    readonly property int fieldInsetY: 6
    readonly property int fieldRadius: 8
    readonly property int rowHeight: 70
    readonly property int rowRadius: 8
    readonly property int marker: 14
    readonly property int stickyButton: 30
    readonly property int rowButton: 22
    readonly property int dropLineHeight: 2
    readonly property int footerHeight: 40
    readonly property int sheetRadius: 14
    readonly property int sheetWidth: 380
    readonly property int sheetPadding: 22
    readonly property int buttonHeight: 34
    readonly property int buttonRadius: 8
    readonly property int focusRing: 2
    readonly property int panelWidth: 300
    readonly property int editorTop: 46
    readonly property int editorLeading: 24
    readonly property int editorTrailing: 8
    readonly property int optionsTop: 10
    readonly property int optionsTrailing: 24
    readonly property int optionsWidth: 44
    readonly property int optionsHeight: 26
    readonly property int optionsDot: 6
    readonly property int toolWidth: 40
    readonly property int toolHeight: 32
    readonly property int toolInnerWidth: 36
    readonly property int toolInnerHeight: 28
    readonly property int toolRadius: 6
    readonly property int separatorWidth: 20
    readonly property int swatch: 14
    readonly property int swatchRingWidth: 2
    readonly property int sizePillWidth: 68
    readonly property int sizePillHeight: 26
    readonly property int optionRadius: 10
    readonly property int optionPadding: 8
    readonly property int cardRadius: 10
    readonly property int cardPadding: 14
    readonly property int cardShadowReach: 18
    readonly property int glowRing: 2
    readonly property int cardShadowDrop: 4
    readonly property int stickyWidth: 300
    readonly property int stickyHeight: 340
    readonly property int minimumStickyWidth: 260
    readonly property int minimumStickyHeight: 52
    readonly property int stickyRadius: 16
    readonly property int stickyShadowReach: 26
    readonly property int stickyShadowDrop: 6
    readonly property int stickyGrip: 3 // an edge can be taken hold of from that far outside
    readonly property int stickyPadding: 18
    readonly property int stickyTop: 40
    readonly property int stickyLeading: 12
    readonly property int stickyTrailing: 8
    readonly property int stickyOverhang: 24
    readonly property int stickyControl: 24
    readonly property int stickyControlGap: 2
    readonly property int dragThreshold: 2
    readonly property int wheelStep: 60
    readonly property int scrollBarWidth: 8
    readonly property int menuRowTop: 10
    readonly property int menuRowLeading: 14
    readonly property int menuRowHeight: 26
    readonly property int menuRadius: 9
    readonly property int wideSheetWidth: 460
    readonly property int aboutWidth: 420
    readonly property int aboutHeight: 440
    readonly property int shortcutsWidth: 720
    readonly property int shortcutsHeight: 710
    readonly property int shortcutRowHeight: 24
    readonly property int progressHeight: 6
    readonly property int undoBarHeight: 44
    readonly property int undoBarMargin: 16

    // Icons, in points
    readonly property int iconSmall: 11
    readonly property int icon: 13
    readonly property int iconTool: 15 // drawn in its box with air around, as tall as 13-point text
    readonly property int iconHeader: 14
    readonly property int iconEmptyList: 22
    readonly property int iconEmptyPane: 44

    // Durations, in milliseconds; nothing moves where the system asks for that
    readonly property int hoverDuration: root.moving(120)
    readonly property int buttonFadeDuration: root.moving(150)
    readonly property int glideDuration: root.moving(200)
    readonly property int fadeDuration: root.moving(150)
    readonly property int glowInDuration: root.moving(300)
    readonly property int glowOutDuration: root.moving(500)
    readonly property int glowTime: 1800 // all of it

    // Fonts
    readonly property string family: "Outfit"
    readonly property font tabFont: root.face(Font.DemiBold, 11)
    readonly property font searchFont: root.face(Font.Normal, 12)
    readonly property font rowTitleFont: root.face(Font.Bold, 13)
    readonly property font rowPreviewFont: root.face(Font.ExtraLight, 12)
    readonly property font rowTimeFont: root.face(Font.Normal, 11)
    readonly property font placeholderFont: root.face(Font.Normal, 12)
    readonly property font footerFont: root.face(Font.DemiBold, 10)
    readonly property font currentLanguageFont: root.face(Font.Bold, 10)
    readonly property font emptyPaneFont: root.face(Font.DemiBold, 15)
    readonly property font panelTitleFont: root.face(Font.DemiBold, 18)
    readonly property font bodyFont: root.face(Font.Normal, 13)
    readonly property font buttonFont: root.face(Font.DemiBold, 13)
    readonly property font sheetTitleFont: root.face(Font.Bold, 15)
    readonly property font toolFont: root.face(Font.DemiBold, 11)
    readonly property font sizePillFont: root.face(Font.Bold, 12)
    readonly property font optionFont: root.face(Font.Bold, 13)
    readonly property font capsuleFont: root.face(Font.DemiBold, 13)
    readonly property font menuFont: root.face(Font.Normal, 13)
    readonly property font tipFont: root.face(Font.Normal, 12)

    function face(weight: int, size: int): font {
        return Qt.font({ family: root.family, weight: weight, pixelSize: size });
    }
    function moving(duration: int): int {
        return SystemPreferences.reducesMotion ? 0 : duration;
    }
}
