// The keys of a shortcut, to press when others shall take their place. Needs the caps, and whether it records. Reports
// `activated`.
import QtQuick
import Tarnvale.Design

Pressable {
    id: root

    required property list<string> caps
    required property bool isRecording

    title: isRecording ? qsTr("Press a shortcut…") : qsTr("Shortcut %1, change it").arg(caps.join("+"))
    radius: Theme.radius7
    implicitHeight: Theme.buttonHeight
    implicitWidth: Math.max(Math.round(120 * Math.max(1, Theme.textScale)),
                            Math.ceil(isRecording ? prompt.implicitWidth : keys.implicitWidth) + 2 * Theme.space12)

    RoundRect {
        anchors.fill: parent
        radius: root.radius
        color: root.isRecording ? Theme.wash(Theme.accent, 0.16)
                                : (root.isPressed ? Theme.pressFill
                                                  : (root.isHovered ? Theme.selectedFill : Theme.chipFill))
        strokeColor: root.isRecording ? Theme.focusRing : Theme.capStroke
        strokeWidth: root.isRecording || Theme.highContrast ? Theme.stroke : 0
    }
    Text {
        id: prompt
        anchors.centerIn: parent
        visible: root.isRecording || root.caps.length === 0
        text: root.isRecording ? qsTr("Press a shortcut…") : qsTr("Set shortcut")
        textFormat: Text.PlainText
        color: Theme.ink
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size12
        Accessible.ignored: true
    }
    Keycaps {
        id: keys
        anchors.centerIn: parent
        visible: !root.isRecording
        caps: root.caps
        Accessible.ignored: true
    }
}
