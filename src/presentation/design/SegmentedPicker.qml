// One choice of a few, side by side. Needs what it is about and the titles; who shows it keeps `current`. Reports
// `chosen` with the index that the user wants. The arrow keys move.
import QtQuick
import Tarnvale.Design

FocusScope {
    id: root

    required property string title
    required property list<string> options
    property list<string> symbols
    property int current: 0

    signal chosen(index: int)

    function step(by: int): void {
        const next = Math.min(options.length - 1, Math.max(0, current + by));
        if (next !== current)
            chosen(next);
    }

    implicitHeight: Theme.buttonHeight
    implicitWidth: segments.implicitWidth + 2 * Theme.space2
    activeFocusOnTab: true
    Accessible.role: Accessible.PageTabList
    Accessible.name: title
    Keys.onLeftPressed: root.step(LayoutMirroring.enabled ? 1 : -1)
    Keys.onRightPressed: root.step(LayoutMirroring.enabled ? -1 : 1)

    RoundRect {
        anchors.fill: parent
        radius: Theme.radius8
        color: Theme.chipFill
    }
    Row {
        id: segments
        anchors.centerIn: parent
        height: parent.height - 2 * Theme.space2

        Repeater {
            model: root.options

            Item {
                id: segment

                required property string modelData
                required property int index
                readonly property bool isCurrent: index === root.current
                readonly property string symbol: root.symbols[index] ?? ""

                height: segments.height
                width: Math.ceil(content.implicitWidth) + 2 * Theme.space12
                Accessible.role: Accessible.PageTab
                Accessible.name: modelData
                Accessible.selected: isCurrent
                Accessible.onPressAction: root.chosen(index)

                RoundRect {
                    anchors.fill: parent
                    radius: Theme.radius6
                    color: segment.isCurrent ? Theme.surfaceRaised : Theme.hoverFill
                    strokeColor: Theme.cardStroke
                    strokeWidth: segment.isCurrent ? Theme.stroke : 0
                    visible: segment.isCurrent || hover.hovered
                }
                Row {
                    id: content
                    anchors.centerIn: parent
                    spacing: Theme.space6

                    Symbol {
                        anchors.verticalCenter: parent.verticalCenter
                        visible: segment.symbol !== ""
                        name: segment.symbol
                        size: Theme.size12
                        color: segment.isCurrent ? Theme.ink : Theme.inkSecondary
                    }
                    Text {
                        anchors.verticalCenter: parent.verticalCenter
                        text: segment.modelData
                        textFormat: Text.PlainText
                        color: segment.isCurrent ? Theme.ink : Theme.inkSecondary
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.size12
                        font.weight: Font.Medium
                        Accessible.ignored: true
                    }
                }
                HoverHandler {
                    id: hover
                }
                TapHandler {
                    onTapped: root.chosen(segment.index)
                }
            }
        }
    }
    FocusRing {
        isShown: root.activeFocus
        radius: Theme.radius8 + Theme.space2
    }
}
