// One action of the palette: its tile, title and subtitle. Needs the roles of the palette's rows, and whether it is the
// highlighted one and waits for its second press. Reports `chosen`.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    required property string itemId
    required property string title
    required property string subtitle
    required property string symbol
    required property string tint
    required property string confirmation
    property bool isHighlighted: false
    property bool isArmed: false

    readonly property color mark: tint === "secondary" ? Theme.inkSecondary : Theme.tint(tint)
    readonly property string note: isArmed ? confirmation : subtitle

    signal chosen

    Accessible.role: Accessible.ListItem
    Accessible.name: root.title + ", " + root.note
    Accessible.selectable: true
    Accessible.selected: isHighlighted
    Accessible.onPressAction: root.chosen()

    RoundRect {
        anchors.fill: parent
        radius: Theme.radius9
        color: Theme.wash(Theme.accent, Theme.highContrast ? 0.32 : 0.16)
        visible: root.isHighlighted
    }
    RoundRect {
        id: tile
        anchors.left: parent.left
        anchors.leftMargin: Theme.space10
        anchors.verticalCenter: parent.verticalCenter
        width: Math.round(28 * Math.max(1, Theme.textScale))
        height: width
        radius: Theme.radius7
        color: root.isArmed ? Theme.danger : Theme.wash(root.mark, 0.14)

        Behavior on color {
            ColorAnimation {
                duration: Theme.springDuration
                easing.type: Theme.springEasing
            }
        }
        Symbol {
            anchors.centerIn: parent
            name: root.symbol
            size: Theme.size12
            color: root.isArmed ? Theme.inkOn : root.mark
        }
    }
    Column {
        anchors.left: tile.right
        anchors.leftMargin: Theme.space12
        anchors.right: parent.right
        anchors.rightMargin: Theme.space12
        anchors.verticalCenter: parent.verticalCenter

        Text {
            id: titleText
            width: parent.width
            text: root.title
            textFormat: Text.PlainText
            elide: Text.ElideMiddle
            color: root.isArmed ? Theme.dangerText : Theme.ink
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size13
            font.weight: Font.Medium
            Accessible.ignored: true
        }
        Text {
            id: noteText
            width: parent.width
            text: root.note
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size115
            Accessible.ignored: true
        }
    }
    HoverHandler {
        id: hover
    }
    HoverTip {
        text: titleText.truncated || noteText.truncated ? root.title + "\n" + root.note : ""
        hovered: hover.hovered
    }
    TapHandler {
        onTapped: root.chosen()
    }
}
