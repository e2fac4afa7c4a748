// A line of text to press. Needs its title. Reports `activated`.
import QtQuick

Pressable {
    id: root

    property int textSize: Theme.size115
    property color color: Theme.link

    accessibleRole: Accessible.Link
    radius: Theme.radius4
    implicitWidth: Math.ceil(label.implicitWidth)
    implicitHeight: Math.ceil(label.implicitHeight)
    opacity: isPressed ? 0.7 : 1

    Text {
        id: label
        anchors.centerIn: parent
        text: root.title
        textFormat: Text.PlainText
        color: root.color
        font.family: Theme.fontFamily
        font.pixelSize: root.textSize
        font.weight: Font.Medium
        font.underline: root.isHovered
        Accessible.ignored: true
    }
    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }
}
