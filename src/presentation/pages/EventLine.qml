// One start or stop of a server. Needs the roles of the events' rows.
import QtQuick
import Tarnvale.Design
import Tarnvale.Pages

Item {
    id: root

    required property string name
    required property string ports
    required property string age
    required property string date
    required property bool isStart

    implicitHeight: PageMetrics.lineHeight
    Accessible.role: Accessible.ListItem
    Accessible.name: name + ", " + ports + ", " + age

    SymbolTile {
        id: tile
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        size: PageMetrics.smallTile
        symbolSize: Theme.size8
        symbol: root.isStart ? "play.fill" : "stop.fill"
        tint: root.isStart ? Theme.success : Theme.gray
        fillOpacity: 0.14
    }
    Column {
        anchors.left: tile.right
        anchors.leftMargin: Theme.space10
        anchors.right: age.left
        anchors.rightMargin: Theme.space10
        anchors.verticalCenter: parent.verticalCenter

        Text {
            width: parent.width
            text: root.name
            textFormat: Text.PlainText
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignLeft
            color: Theme.ink
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size125
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
        Text {
            width: parent.width
            text: root.ports
            textFormat: Text.PlainText
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignLeft
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size11
            Accessible.ignored: true
        }
    }
    Text {
        id: age
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: root.age
        textFormat: Text.PlainText
        color: Theme.inkSecondary
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size105
        Accessible.ignored: true

        HoverHandler {
            id: hover
        }
        HoverTip {
            text: root.date
            hovered: hover.hovered
        }
    }
}
