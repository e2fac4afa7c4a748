pragma Singleton
// The measures of the panel, in pixels. They grow with the desktop's text, and never shrink below what fits a pointer.
import QtQuick
import Tarnvale.Design

QtObject {
    readonly property real scale: Math.max(1, Theme.textScale)
    readonly property int width: Math.round(400 * scale)
    readonly property int rowHeight: Math.round(50 * scale)
    readonly property int sectionHeaderHeight: Math.round(28 * scale)
    readonly property int maxListHeight: Math.round(440 * scale)
    readonly property int listMargin: 6
    readonly property int tile: Math.round(32 * scale)
    readonly property int stackRowHeight: Math.round(44 * scale)
    readonly property int stackTile: Math.round(28 * scale)
    readonly property int maxStacksHeight: 5 * stackRowHeight
    readonly property int recentHeaderHeight: Math.round(30 * scale)
    readonly property int eventRowHeight: Math.round(38 * scale)
    readonly property int eventTile: Math.round(22 * scale)
    readonly property int dayHeight: Math.round(22 * scale)
    readonly property int maxRecentHeight: Math.round(240 * scale)
    readonly property int footerHeight: Math.round(38 * scale)
    readonly property int healthDot: 9
    readonly property int healthDotOverhang: 3
    readonly property int enterShift: 6
}
