// The head of a page: its title, a subtitle beneath it, and at the right whatever is put into it. Needs both texts.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    required property string title
    property string subtitle: ""
    default property alias trailing: trailing.data

    implicitHeight: Math.max(texts.implicitHeight, trailing.implicitHeight)
    implicitWidth: texts.implicitWidth + Theme.space16 + trailing.implicitWidth

    Column {
        id: texts
        anchors.left: parent.left
        anchors.right: trailing.left
        anchors.rightMargin: Theme.space16
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space2

        Text {
            width: parent.width
            text: root.title
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: Theme.ink
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size28
            font.weight: Font.Bold
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Text {
            id: words
            width: parent.width
            text: root.subtitle
            textFormat: Text.PlainText
            elide: Text.ElideRight
            visible: text !== ""
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size13
            Accessible.role: Accessible.StaticText
            Accessible.name: text

            HoverHandler {
                id: hover
            }
            HoverTip {
                text: words.truncated ? words.text : ""
                hovered: hover.hovered
            }
        }
    }
    Row {
        id: trailing
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space8
    }
}
