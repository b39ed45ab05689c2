// Every colour, size, radius, font and duration there is.
pragma Singleton
import QtQuick

QtObject {
    // Set by the windows from what the system says.
    property bool isDark: true
    property bool reducesMotion: false
    // The last thing the user touched was the keyboard: then the focus shows.
    property bool focusByKeyboard: false

    // Grounds
    readonly property color backdropBase: isDark ? "#1a2129" : "#e6ebef"
    readonly property color backdrop: isDark ? "#0b1015" : "#f7f9fa"
    readonly property color finish: isDark ? Qt.rgba(1, 1, 1, 0.045) : Qt.rgba(1, 1, 1, 0.3)
    readonly property color panelLine: isDark ? Qt.rgba(1, 1, 1, 0.14) : Qt.rgba(0, 0, 0, 0.14)
    readonly property color card: isDark ? Qt.rgba(1, 1, 1, 0.035) : Qt.rgba(1, 1, 1, 0.6)
    readonly property color bar: isDark ? Qt.rgba(1, 1, 1, 0.03) : Qt.rgba(1, 1, 1, 0.5)
    readonly property color hover: isDark ? Qt.rgba(1, 1, 1, 0.06) : Qt.rgba(0, 0, 0, 0.045)
    readonly property color pressed: isDark ? Qt.rgba(1, 1, 1, 0.10) : Qt.rgba(0, 0, 0, 0.08)
    readonly property color tile: isDark ? Qt.rgba(1, 1, 1, 0.08) : Qt.rgba(0, 0, 0, 0.06)
    readonly property color trough: isDark ? Qt.rgba(1, 1, 1, 0.05) : Qt.rgba(0, 0, 0, 0.05)
    readonly property color thumb: isDark ? Qt.rgba(1, 1, 1, 0.14) : Qt.rgba(1, 1, 1, 0.95)
    readonly property color hairline: isDark ? Qt.rgba(1, 1, 1, 0.10) : Qt.rgba(0, 0, 0, 0.11)
    readonly property color scrollThumb: isDark ? Qt.rgba(1, 1, 1, 0.22) : Qt.rgba(0, 0, 0, 0.25)
    readonly property color scrim: Qt.rgba(0, 0, 0, 0.45)
    readonly property color alertGround: isDark ? "#1f2730" : "#fbfcfd"
    readonly property color menuGround: isDark ? "#232c36" : "#ffffff"
    readonly property color toastGround: Qt.rgba(0, 0, 0, 0.85)
    readonly property color toastLine: Qt.rgba(1, 1, 1, 0.2)
    readonly property color toastText: "#f2f5f8"
    readonly property color field: isDark ? Qt.rgba(1, 1, 1, 0.05) : Qt.rgba(1, 1, 1, 0.8)
    readonly property color searchHighlight: isDark ? Qt.rgba(0x8a / 255, 0x6d / 255, 0, 0.4) : Qt.rgba(0xf2 / 255, 0xc9 / 255, 0x4c / 255, 0.4)

    // Inks
    readonly property color text: isDark ? "#e8ecf1" : "#14191f"
    readonly property color secondary: isDark ? "#b2bbc6" : "#48525d"
    readonly property color accent: isDark ? "#67d3d6" : "#00636c"
    readonly property color red: isDark ? "#ff918a" : "#b4231a"
    readonly property color orange: isDark ? "#ffa657" : "#9a4700"
    readonly property color yellow: isDark ? "#f2d06b" : "#6e5a00"
    readonly property color green: isDark ? "#63d297" : "#14683a"
    readonly property color blue: isDark ? "#79b8ff" : "#1257ad"
    readonly property color gray: isDark ? "#aab4c0" : "#56606b"

    function statusColor(name) {
        switch (name) {
        case "red":
            return red;
        case "orange":
            return orange;
        case "yellow":
            return yellow;
        case "green":
            return green;
        case "blue":
            return blue;
        case "gray":
            return gray;
        }
        return secondary;
    }
    // What is seen of a colour that lies over an opaque one. One opaque area is drawn in a fraction
    // of the time that several layers take.
    function over(ground, color) {
        return Qt.rgba(ground.r + (color.r - ground.r) * color.a, ground.g + (color.g - ground.g) * color.a, ground.b + (color.b - ground.b) * color.a, 1);
    }
    // The ground of a window whose backdrop is as dense as told.
    function ground(backdropOpacity) {
        return over(over(backdropBase, tinted(backdrop, backdropOpacity)), finish);
    }
    function tinted(color, opacity) {
        return Qt.rgba(color.r, color.g, color.b, opacity);
    }

    // Type
    readonly property bool isMac: Qt.platform.os === "osx"
    readonly property string family: isMac ? ".AppleSystemUIFont" : "Open Sans"
    readonly property string monospacedFamily: isMac ? "Menlo" : "JetBrains Mono"
    readonly property int small: 11
    readonly property int body: 13
    readonly property int title: 15

    // Measure
    readonly property int rowRadius: 4
    readonly property int cardRadius: 8
    readonly property int pillHeight: 28
    readonly property int stripHeight: 46
    readonly property int statusBarHeight: 30
    readonly property int statusColumnWidth: 18

    // Those of a section's rows, which the logic reckons with: the windows set them.
    property real headerHeight
    property real bottomInset
    property real rowLeadingInset
    property real rowChevronSlotWidth
    property real rowPrimaryIconSlotWidth
    property real rowTrailingInset
    property real actionColumnWidth
    property real metadataColumnWidth

    // Motion, in milliseconds
    readonly property int sectionReveal: reducesMotion ? 0 : 180
    readonly property int rowReveal: reducesMotion ? 0 : 140
    readonly property int hoverChange: reducesMotion ? 0 : 120
    readonly property int thumbSlide: reducesMotion ? 0 : 120
    readonly property int toastChange: reducesMotion ? 0 : 200
    readonly property int changeTint: reducesMotion ? 0 : 600
    readonly property int tipDelay: 600
}
