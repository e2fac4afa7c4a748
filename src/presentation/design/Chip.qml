// One of several filters to choose from. Needs its title and whether it is the chosen one; `count` from 0 on is
// shown behind the title. Reports `activated`. `drawsSelection` is off where the row moves one capsule between chips.
import QtQuick
import Tarnvale.Design

Pressable {
    id: root

    property bool isSelected: false
    property int count: -1
    property bool drawsSelection: true

    radius: height / 2
    accessibleRole: Accessible.RadioButton
    implicitWidth: Math.ceil(content.implicitWidth) + 2 * Theme.space9
    implicitHeight: Theme.controlHeight
    Accessible.checkable: true
    Accessible.checked: isSelected
    Accessible.selected: isSelected

    RoundRect {
        anchors.fill: parent
        radius: root.radius
        color: root.isSelected && root.drawsSelection ? Theme.selectedFill : Theme.hoverFill
        opacity: (root.isSelected && root.drawsSelection) || (root.isHovered && !root.isSelected) ? 1 : 0
    }
    Row {
        id: content
        anchors.centerIn: parent
        spacing: Theme.space4

        Text {
            text: root.title
            textFormat: Text.PlainText
            color: root.isSelected ? Theme.ink : Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size11
            font.weight: Font.Medium
            Accessible.ignored: true
        }
        Text {
            text: root.count
            visible: root.count >= 0
            color: Theme.inkTertiary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size11
            Accessible.ignored: true
        }
    }
}
