// A button that destroys something only at its second press. Needs the titles of both states; who shows it decides
// by `armed` which of them it is in, and for how long. Reports `activated` at each press.
import QtQuick
import Tarnvale.Design

Pressable {
    id: root

    required property string armedTitle
    property bool armed: false
    property string idleTip: ""
    property string armedTip: ""
    property bool isQuiet: true // without a ground of its own until it is armed or hovered
    readonly property string shownTitle: armed ? armedTitle : title

    tip: armed ? armedTip : idleTip
    radius: height / 2
    implicitWidth: Math.ceil(label.implicitWidth) + 2 * Theme.space10
    implicitHeight: Theme.controlHeight
    Accessible.name: shownTitle

    RoundRect {
        anchors.fill: parent
        radius: root.radius
        color: root.armed ? (root.isPressed ? Qt.darker(Theme.danger, 1.12) : Theme.danger)
            : (root.isPressed ? Theme.pressFill : (root.isHovered ? Theme.selectedFill : Theme.chipFill))
        visible: root.armed || !root.isQuiet || root.isHovered || root.isPressed

        Behavior on color {
            ColorAnimation {
                duration: Theme.quick
            }
        }
    }
    Text {
        id: label
        anchors.centerIn: parent
        text: root.shownTitle
        textFormat: Text.PlainText
        color: root.armed ? Theme.inkOn : Theme.inkSecondary
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size11
        font.weight: root.armed ? Font.DemiBold : Font.Medium
        Accessible.ignored: true
    }
}
