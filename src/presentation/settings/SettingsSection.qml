// A few choices that belong together, on a card with lines between them; perhaps under a title. Needs nothing.
import QtQuick
import Tarnvale.Design

Column {
    id: root

    property string title: ""
    default property alias content: card.content

    width: parent?.width ?? 0
    spacing: Theme.space8

    Text {
        leftPadding: Theme.space4
        width: parent.width
        visible: root.title !== ""
        text: root.title
        textFormat: Text.PlainText
        elide: Text.ElideRight
        color: Theme.inkSecondary
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size12
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Card {
        id: card
        width: parent.width
        padding: Theme.space12
        spacing: Theme.space12
    }
}
