// One thing that the welcome tells of: its symbol, title and text, and a control at the trailing edge. Needs the first
// three.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    required property string symbol
    required property string title
    required property string text
    property color tint: Theme.blue
    default property alias control: control.data

    width: parent?.width ?? 0
    implicitHeight: Math.max(tile.height, texts.implicitHeight, control.implicitHeight)

    SymbolTile {
        id: tile
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        symbol: root.symbol
        tint: root.tint
        size: 36
        symbolSize: Theme.size16
    }
    Column {
        id: texts
        anchors.left: tile.right
        anchors.leftMargin: Theme.space12
        anchors.right: control.left
        anchors.rightMargin: Theme.space12
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space2

        Text {
            width: parent.width
            text: root.title
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            color: Theme.ink
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size13
            font.weight: Font.DemiBold
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Text {
            width: parent.width
            text: root.text
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size115
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
    Row {
        id: control
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
    }
}
