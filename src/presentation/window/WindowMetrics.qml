pragma Singleton
// The measures of the window, in pixels. They grow with the desktop's text.
import QtQuick
import Tarnvale.Design

QtObject {
    readonly property real scale: Math.max(1, Theme.textScale)
    readonly property int sidebar: Math.round(224 * scale)
    readonly property int sidebarRow: Math.round(30 * scale)
    readonly property int toolbar: Math.round(54 * scale)
    readonly property int search: Math.round(296 * scale)
    readonly property int row: Math.round(56 * scale)
    readonly property int sectionHeader: Math.round(36 * scale)
    readonly property int tile: Math.round(34 * scale)
    readonly property int thumbWidth: Math.round(58 * scale)
    readonly property int thumbHeight: Math.round(36 * scale)
    readonly property int inspector: Math.round(328 * scale)
    readonly property int widestInspector: Math.round(420 * scale)
    readonly property int headTile: Math.round(44 * scale)
    readonly property int healthDot: 9
    readonly property int healthDotOverhang: 3
    readonly property int log: Math.round(240 * scale)
    readonly property int sparkline: Math.round(44 * scale)
    readonly property int code: 92 // the QR code, which a camera reads
    readonly property int toastWidth: 560
    readonly property int toastMargin: 22
}
