// A symbol to press, without a border; it lights up under the pointer. Needs its title, which is also its tool tip,
// and its symbol. `isChecked` makes it a switch. Reports `activated`.
import QtQuick
import Tarnvale.Design

Pressable {
    id: root

    required property string systemImage
    property color tint: Theme.inkSecondary
    property real size: Theme.size13
    property bool isCheckable: false
    property bool isChecked: false
    property bool isFilled: false // with a ground as a button with a title has it

    tip: title
    implicitWidth: Math.max(Theme.controlHeight, Math.round(size * 1.2) + 2 * Theme.space4)
    implicitHeight: implicitWidth
    opacity: enabled ? 1 : 0.4
    Accessible.checkable: isCheckable
    Accessible.checked: isChecked

    RoundRect {
        anchors.fill: parent
        radius: root.radius
        color: root.isPressed ? Theme.pressFill : (root.isChecked || (root.isFilled && root.isHovered) ? Theme.selectedFill : Theme.hoverFill)
        opacity: root.isHovered || root.isPressed || root.isChecked || root.isFilled ? 1 : 0

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.quick
            }
        }
    }
    Symbol {
        anchors.centerIn: parent
        name: root.systemImage
        size: root.size
        color: root.tint
    }
}
