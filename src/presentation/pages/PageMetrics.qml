pragma Singleton
// How large the parts of these pages are. What holds text grows with it.
import QtQuick
import Tarnvale.Design

QtObject {
    readonly property real textGrowth: Math.max(1, Theme.textScale)
    readonly property int maximumWidth: 1120
    readonly property int margin: Theme.space28
    readonly property int gap: Theme.space12

    // A list's head must not grow once it stands, or the list begins further down.
    readonly property int headHeight: Math.round(54 * textGrowth)
    readonly property int tile: 36
    readonly property int smallTile: 26
    readonly property int lift: 2
    readonly property int rise: 8

    readonly property int statCardHeight: Math.round(96 * textGrowth)
    readonly property int fourStatsFrom: Math.round(680 * textGrowth)
    readonly property int runningCardWidth: Math.round(236 * textGrowth)
    readonly property int runningCardHeight: Math.round(84 * textGrowth)
    readonly property int siteCardWidth: Math.round(236 * textGrowth)
    readonly property int siteCardHeight: Math.round(60 * textGrowth)
    readonly property int blocksAbreastFrom: Math.round(760 * textGrowth)
    readonly property int lineHeight: Math.round(44 * textGrowth)
    readonly property int commandHeight: Math.round(24 * textGrowth)
    readonly property int sessionHeight: Math.round(26 * textGrowth)
    readonly property int lengthWidth: Math.round(72 * textGrowth)
    readonly property int dayHeight: Math.round(36 * textGrowth)

    readonly property int sheetWidth: 520
    readonly property int sheetTile: 40
    readonly property int suggestionHeight: Math.round(34 * textGrowth)
    readonly property real mostSuggestions: 7.5 // then the list scrolls, and half a line says so
    readonly property int footnoteHeight: Math.round(32 * textGrowth)

    // How wide a page's content is where the page is that wide.
    function contentWidth(pageWidth: real): real {
        return Math.max(0, Math.min(maximumWidth, pageWidth - 2 * margin));
    }
}
