pragma Singleton
// How everything looks: colours by what they mean, sizes and durations by step. Colours are written here and nowhere
// else. What the desktop prefers comes from `Appearance`; all of it may change while the program runs.
import QtQuick
import Tarnvale.Design

QtObject {
    id: root

    // What the desktop prefers.
    readonly property bool dark: Appearance.dark
    readonly property bool highContrast: Appearance.highContrast
    readonly property bool reduceMotion: Appearance.reduceMotion
    readonly property real textScale: Appearance.textScale
    readonly property string fontFamily: Appearance.fontFamily
    readonly property string monoFamily: Appearance.monoFamily

    // Palette: the standard colours. Both columns stand out at least 3 to 1 from their ground.
    readonly property color blue: dark ? "#4c9dff" : "#0a6fe0"
    readonly property color brown: dark ? "#bf9b76" : "#8a6a48"
    readonly property color cyan: dark ? "#5ac8f5" : "#0e83ad"
    readonly property color gray: dark ? "#a0a0a8" : "#7c7c84"
    readonly property color green: dark ? "#35d05c" : "#1f9d48"
    readonly property color orange: dark ? "#ff9f2e" : "#d06a00"
    readonly property color pink: dark ? "#ff5f87" : "#e0285a"
    readonly property color purple: dark ? "#bf7cf5" : "#9440d0"
    readonly property color red: dark ? "#ff5a50" : "#dc2a22"
    readonly property color teal: dark ? "#4fcbd8" : "#0f8593"

    // Brands that are shown apart from a port's own tile.
    readonly property color brandDocker: "#2496ed"
    readonly property color brandClaude: Qt.rgba(0.85, 0.47, 0.34, 1)

    // Text, from the most to the least important, and text on a filled ground.
    readonly property color ink: dark ? "#f2f2f5" : "#1b1b1f"
    readonly property color inkSecondary: highContrast ? ink : (dark ? "#aeaeb6" : "#5c5c64")
    readonly property color inkTertiary: highContrast ? inkSecondary : (dark ? "#9a9aa2" : "#6c6c74")
    readonly property color inkOn: "#ffffff"

    // Grounds.
    readonly property color surface: dark ? "#242428" : "#f7f7f9"
    readonly property color page: dark ? "#1e1e21" : "#ffffff"
    readonly property color sidebar: dark ? "#27272b" : "#f1f1f4"
    readonly property color card: dark ? "#28282c" : "#fafafb"
    readonly property color surfaceWash: surface // no desktop blurs what would shine through
    readonly property color surfaceRaised: dark ? "#2e2e33" : "#ffffff"
    readonly property color fieldFill: wash(ink, 0.06)
    readonly property color hoverFill: wash(ink, 0.07)
    readonly property color pressFill: wash(ink, 0.13)
    readonly property color chipFill: wash(ink, 0.06)
    readonly property color selectedFill: wash(ink, 0.12)
    readonly property color cardHover: dark ? "#2f2f34" : "#f3f3f6"
    readonly property color inspector: dark ? "#222226" : "#fbfbfc"
    readonly property color rowHover: wash(ink, dark ? 0.06 : 0.045)
    readonly property color selectionFill: wash(accent, dark ? 0.3 : 0.12)
    readonly property color selectionStroke: wash(accent, dark ? 0.6 : 0.35)
    readonly property color sidebarSelected: dark ? wash(ink, 0.12) : "#e2e2e8"
    readonly property color shadow: Qt.rgba(0, 0, 0, dark ? 0.3 : 0.08)
    readonly property color pictureWash: Qt.rgba(0, 0, 0, 0.45)
    readonly property color paletteWash: Qt.rgba(0, 0, 0, dark ? 0.3 : 0.12)
    readonly property color console: dark ? "#131316" : "#1f1f24" // dark in both, as a terminal is
    readonly property color consoleInk: "#dcdce2"
    readonly property color consoleFaint: "#85858e"
    readonly property color consoleWarning: "#ffb45c"
    readonly property color consoleError: "#ff8078"
    readonly property color shade: Qt.rgba(0, 0, 0, dark ? 0.45 : 0.22) // over what waits behind a sheet
    readonly property color capFill: dark ? wash(ink, 0.1) : "#ffffff"

    // Lines.
    readonly property color divider: wash(ink, highContrast ? 0.4 : 0.09)
    readonly property color panelStroke: wash(ink, highContrast ? 0.6 : 0.12)
    readonly property color cardStroke: wash(ink, highContrast ? 0.5 : (dark ? 0.08 : 0.09))
    readonly property color tipStroke: dark ? "#4a4a50" : "#d5d5da" // opaque, for windows of their own
    readonly property color capStroke: wash(ink, highContrast ? 0.6 : 0.14)
    readonly property color scrollThumb: wash(ink, highContrast ? 0.7 : 0.32)

    // Meanings. `inkOn` can be read on `accent` and on `danger`.
    readonly property color accent: Appearance.hasAccent ? Appearance.accent : (dark ? "#2a70dc" : "#1466d8")
    readonly property color link: Appearance.legible(accent, dark ? surfaceRaised : surface, 4.5)
    readonly property color focusRing: Appearance.legible(accent, surface, 3)
    readonly property color danger: dark ? "#d8392f" : "#d0281f"
    readonly property color dangerText: dark ? "#ff7a72" : "#c2211a"
    readonly property color dangerFill: wash(red, dark ? 0.16 : 0.1)
    readonly property color warningStroke: wash(orange, 0.35)
    readonly property color warningFill: wash(orange, 0.12)
    readonly property color success: green
    readonly property color warning: orange
    readonly property color info: blue

    // Type: pixels by step, 13 being the text of a list. They follow the desktop's text size.
    readonly property string sansFamily: fontFamily
    readonly property int size8: Math.round(8 * textScale)
    readonly property int size9: Math.round(9 * textScale)
    readonly property int size10: Math.round(10 * textScale)
    readonly property int size105: Math.round(10.5 * textScale)
    readonly property int size11: Math.round(11 * textScale)
    readonly property int size115: Math.round(11.5 * textScale)
    readonly property int size12: Math.round(12 * textScale)
    readonly property int size125: Math.round(12.5 * textScale)
    readonly property int size13: Math.round(13 * textScale)
    readonly property int size14: Math.round(14 * textScale)
    readonly property int size15: Math.round(15 * textScale)
    readonly property int size16: Math.round(16 * textScale)
    readonly property int size17: Math.round(17 * textScale)
    readonly property int size19: Math.round(19 * textScale)
    readonly property int size20: Math.round(20 * textScale)
    readonly property int size24: Math.round(24 * textScale)
    readonly property int size26: Math.round(26 * textScale)
    readonly property int size28: Math.round(28 * textScale)
    readonly property real tracking: 0.6

    // Space.
    readonly property int space1: 1
    readonly property int space2: 2
    readonly property int space3: 3
    readonly property int space4: 4
    readonly property int space5: 5
    readonly property int space6: 6
    readonly property int space7: 7
    readonly property int space8: 8
    readonly property int space9: 9
    readonly property int space10: 10
    readonly property int space12: 12
    readonly property int space14: 14
    readonly property int space16: 16
    readonly property int space20: 20
    readonly property int space24: 24
    readonly property int space28: 28
    readonly property int space32: 32
    readonly property int space36: 36

    // Heights of what is pressed; they grow with the text.
    readonly property int buttonHeight: Math.round(30 * Math.max(1, textScale))
    readonly property int controlHeight: Math.round(22 * Math.max(1, textScale))
    readonly property int fieldHeight: Math.round(34 * Math.max(1, textScale))

    // Corners and lines.
    readonly property int radius4: 4
    readonly property int radius5: 5
    readonly property int radius6: 6
    readonly property int radius7: 7
    readonly property int radius8: 8
    readonly property int radius9: 9
    readonly property int radius10: 10
    readonly property int radius12: 12
    readonly property int radius14: 14
    readonly property int radius16: 16
    readonly property int stroke: highContrast ? 2 : 1

    // Time, in milliseconds. Nothing moves where the desktop asks for no motion.
    readonly property int quick: reduceMotion ? 0 : 120
    readonly property int fade: reduceMotion ? 0 : 150
    readonly property int springDuration: reduceMotion ? 0 : 280
    readonly property int springEasing: Easing.OutCubic
    readonly property int pulseDuration: 1600
    readonly property int turnDuration: 700
    readonly property int lingerDuration: 900

    // The standard colour of this name; gray for any other.
    function tint(name: string): color {
        switch (name) {
        case "blue": return blue;
        case "brown": return brown;
        case "cyan": return cyan;
        case "green": return green;
        case "orange": return orange;
        case "pink": return pink;
        case "purple": return purple;
        case "red": return red;
        case "teal": return teal;
        default: return gray;
        }
    }

    // `base` with this opacity.
    function wash(base: color, opacity: real): color {
        return Qt.rgba(base.r, base.g, base.b, opacity);
    }
}
