// A stack that can be started from here. Needs the roles of the stacks' rows; reports `startChosen`.
import QtQuick
import Tarnvale.Design
import Tarnvale.Pages

Item {
    id: root

    required property string stackId
    required property string name
    required property string commandCount
    required property string toolTip

    signal startChosen

    implicitHeight: PageMetrics.lineHeight
    Accessible.role: Accessible.ListItem
    Accessible.name: name + ", " + commandCount
    Accessible.description: toolTip

    SymbolTile {
        id: tile
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        size: PageMetrics.smallTile
        symbolSize: Theme.size12
        symbol: "square.stack.3d.up.fill"
        tint: Theme.purple
        fillOpacity: 0.14
    }
    Column {
        anchors.left: tile.right
        anchors.leftMargin: Theme.space10
        anchors.right: start.left
        anchors.rightMargin: Theme.space8
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
            text: root.commandCount
            textFormat: Text.PlainText
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignLeft
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size11
            Accessible.ignored: true
        }
        HoverHandler {
            id: hover
        }
        HoverTip {
            text: root.toolTip
            hovered: hover.hovered
        }
    }
    IconButton {
        id: start
        anchors.right: parent.right
        anchors.rightMargin: -Theme.space4
        anchors.verticalCenter: parent.verticalCenter
        title: qsTr("Start %1").arg(root.name)
        systemImage: "play.fill"
        tint: Theme.success
        onActivated: root.startChosen()
    }
}
