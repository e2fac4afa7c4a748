// Something that is on or off. Needs what it is about, for screen readers; who shows it keeps `checked`. Reports
// `toggled` with what the user wants.
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
    radius: height / 2
    implicitHeight: Math.round(20 * Math.max(1, Theme.textScale))
    implicitWidth: Math.round(implicitHeight * 1.7)
    opacity: enabled ? 1 : 0.45
    onActivated: toggled(!checked)

    RoundRect {
        anchors.fill: parent
        radius: root.radius
        color: root.checked ? Theme.accent : Theme.wash(Theme.ink, root.isHovered ? 0.26 : 0.2)
        strokeColor: Theme.capStroke
        strokeWidth: Theme.highContrast ? Theme.stroke : 0
    }
    RoundRect {
        y: Theme.space2
        x: root.checked !== root.LayoutMirroring.enabled ? root.width - width - Theme.space2 : Theme.space2
        width: root.height - 2 * Theme.space2
        height: width
        radius: width / 2
        color: Theme.inkOn

        Behavior on x {
            NumberAnimation {
                duration: Theme.quick
                easing.type: Easing.OutCubic
            }
        }
    }
}
