// A box to tick. Needs what it is about, for screen readers; who shows it keeps `checked`. Reports `toggled` with what
// the user wants.
import QtQuick
import Tarnvale.Design

Pressable {
    id: root

    property bool checked: false

    signal toggled(checked: bool)

    accessibleRole: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.onToggleAction: root.activate()
    radius: Theme.radius4
    implicitHeight: Math.round(16 * Math.max(1, Theme.textScale))
    implicitWidth: implicitHeight
    opacity: enabled ? 1 : 0.45
    onActivated: toggled(!checked)

    RoundRect {
        anchors.fill: parent
        radius: root.radius
        color: root.checked ? Theme.accent : (root.isHovered ? Theme.pressFill : Theme.fieldFill)
        strokeColor: Theme.wash(Theme.ink, 0.3)
        strokeWidth: root.checked ? 0 : Theme.stroke
    }
    Symbol {
        anchors.centerIn: parent
        visible: root.checked
        name: "checkmark"
        size: Theme.size10
        color: Theme.inkOn
    }
}
