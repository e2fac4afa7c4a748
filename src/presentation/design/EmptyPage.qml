// A page that has nothing to show: symbol, title and message in its middle. Needs all three.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    required property string symbol
    required property string title
    required property string message

    implicitWidth: 360
    implicitHeight: content.implicitHeight + 2 * Theme.space36

    Column {
        id: content
        anchors.centerIn: parent
        width: Math.min(parent.width - 2 * Theme.space24, 380)
        spacing: Theme.space6

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: root.symbol
            size: Theme.size28
            color: Theme.inkTertiary
        }
        Item {
            width: 1
            height: Theme.space6
        }
        Text {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            text: root.title
            textFormat: Text.PlainText
            color: Theme.ink
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size15
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Text {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            text: root.message
            textFormat: Text.PlainText
            lineHeight: 1.15
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size125
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
