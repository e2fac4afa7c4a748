// The head of a block of a page: its title, and at the right a link to the page with all of it. Needs both texts;
// reports `chosen` for the link.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    required property string title
    required property string linkTitle

    signal chosen

    implicitHeight: Math.max(heading.implicitHeight, link.implicitHeight)

    Text {
        id: heading
        anchors.left: parent.left
        anchors.right: link.left
        anchors.rightMargin: Theme.space12
        anchors.verticalCenter: parent.verticalCenter
        text: root.title
        textFormat: Text.PlainText
        elide: Text.ElideRight
        color: Theme.ink
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size15
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    LinkButton {
        id: link
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        title: root.linkTitle
        textSize: Theme.size12
        onActivated: root.chosen()
    }
}
