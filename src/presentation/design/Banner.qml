// One line about what went wrong, until the user dismisses it. Needs the text; a long one takes three lines and
// tells the rest as its tool tip. Reports `dismissed`.
import QtQuick
import Tarnvale.Design

RoundRect {
    id: root

    required property string text
    property string dismissTitle: qsTr("Dismiss")

    signal dismissed

    implicitHeight: Math.max(message.implicitHeight, dismiss.implicitHeight) + 2 * Theme.space6
    implicitWidth: 320
    radius: Theme.radius8
    color: Theme.warningFill
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    Symbol {
        id: sign
        anchors.left: parent.left
        anchors.leftMargin: Theme.space10
        anchors.verticalCenter: parent.verticalCenter
        name: "exclamationmark.triangle.fill"
        size: Theme.size12
        color: Theme.warning
    }
    Text {
        id: message
        anchors.left: sign.right
        anchors.leftMargin: Theme.space8
        anchors.right: dismiss.left
        anchors.rightMargin: Theme.space6
        anchors.verticalCenter: parent.verticalCenter
        text: root.text
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        maximumLineCount: 3
        elide: Text.ElideRight
        color: Theme.ink
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size115
        Accessible.ignored: true

        HoverHandler {
            id: hover
        }
        HoverTip {
            text: message.truncated ? root.text : ""
            hovered: hover.hovered
        }
    }
    IconButton {
        id: dismiss
        anchors.right: parent.right
        anchors.rightMargin: Theme.space6
        anchors.verticalCenter: parent.verticalCenter
        title: root.dismissTitle
        systemImage: "xmark"
        size: Theme.size11
        tint: Theme.inkSecondary
        onActivated: root.dismissed()
    }
}
