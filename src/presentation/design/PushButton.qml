// A button with a title, and perhaps a symbol before it. Needs the title; `kind` is "plain", "prominent" for the one
// thing that a screen is for, or "destructive". Reports `activated`.
import QtQuick
import Tarnvale.Design

Pressable {
    id: root

    property string symbol: ""
    property string kind: "plain"
    property bool isArmed: false // a destructive one that waits for its second press
    property bool isSmall: false
    readonly property bool isFilled: kind === "prominent" || isArmed
    readonly property color fill: isArmed ? Theme.danger : Theme.accent
    readonly property color ground: {
        if (isFilled)
            return isPressed ? Qt.darker(fill, 1.14) : (isHovered ? Qt.darker(fill, 1.06) : fill);
        if (kind === "destructive")
            return isPressed || isHovered ? Theme.wash(Theme.red, Theme.dark ? 0.26 : 0.17) : Theme.dangerFill;
        return isPressed ? Theme.pressFill : (isHovered ? Theme.selectedFill : Theme.chipFill);
    }
    readonly property color ink: isFilled ? Theme.inkOn : (kind === "destructive" ? Theme.dangerText : Theme.ink)

    radius: Theme.radius7
    implicitHeight: isSmall ? Theme.controlHeight + Theme.space2 : Theme.buttonHeight
    implicitWidth: Math.ceil(content.implicitWidth) + 2 * (isSmall ? Theme.space10 : Theme.space12)
    opacity: enabled ? 1 : 0.45

    RoundRect {
        anchors.fill: parent
        radius: root.radius
        color: root.ground
        strokeColor: Theme.capStroke
        strokeWidth: Theme.highContrast ? Theme.stroke : 0
    }
    Row {
        id: content
        anchors.centerIn: parent
        width: Math.min(implicitWidth, root.width - 2 * Theme.space8)
        spacing: Theme.space6

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.symbol !== ""
            name: root.symbol
            size: root.isSmall ? Theme.size11 : Theme.size12
            color: root.ink
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(Math.ceil(implicitWidth), root.width - 2 * Theme.space8
                            - (root.symbol !== "" ? Theme.size15 + Theme.space6 : 0))
            text: root.title
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: root.ink
            font.family: Theme.fontFamily
            font.pixelSize: root.isSmall ? Theme.size115 : Theme.size125
            font.weight: Font.Medium
            Accessible.ignored: true
        }
    }
}
