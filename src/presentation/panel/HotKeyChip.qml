// The shortcut that opens the panel, on key caps; a press begins to record another one. Needs the caps and whether it
// records. Without caps the note says how a shortcut can be had.
import QtQuick
import Tarnvale.Design

Pressable {
    id: root

    required property list<string> caps
    required property bool isRecording
    property string note: ""

    title: isRecording ? qsTr("Press a shortcut…") : qsTr("Open with %1").arg(caps.join("+"))
    tip: isRecording ? qsTr("Press a shortcut with ⌘, ⌥ or ⌃ — Esc cancels")
                     : (note !== "" ? note : qsTr("Shortcut that opens Tarnvale — click to change"))
    implicitWidth: (isRecording ? prompt.implicitWidth : content.implicitWidth) + 2 * Theme.space6
    implicitHeight: Theme.controlHeight + Theme.space2

    RoundRect {
        anchors.fill: parent
        radius: root.radius
        color: root.isRecording ? Theme.selectedFill : Theme.hoverFill
        opacity: root.isRecording || root.isHovered ? 1 : 0
    }
    Text {
        id: prompt
        anchors.centerIn: parent
        visible: root.isRecording
        text: qsTr("Press a shortcut…")
        textFormat: Text.PlainText
        color: Theme.ink
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size11
        Accessible.ignored: true
    }
    Row {
        id: content
        anchors.centerIn: parent
        spacing: Theme.space6
        visible: !root.isRecording

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: root.caps.length > 0 ? qsTr("Open with") : qsTr("Set shortcut")
            textFormat: Text.PlainText
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size11
            Accessible.ignored: true
        }
        Keycaps {
            anchors.verticalCenter: parent.verticalCenter
            caps: root.caps
        }
    }
}
