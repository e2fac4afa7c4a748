// One stack. Needs the roles of the stacks' rows; reports what was chosen.
import QtQuick
import Tarnvale.Design
import Tarnvale.Panel

Item {
    id: root

    required property string stackId
    required property string name
    required property string commandCount
    required property string toolTip

    signal startChosen
    signal deleteChosen

    Accessible.role: Accessible.ListItem
    Accessible.name: name + ", " + commandCount

    RoundRect {
        anchors.fill: parent
        radius: Theme.radius8
        color: Theme.hoverFill
        opacity: hover.hovered ? 1 : 0
    }
    HoverHandler {
        id: hover
    }
    RoundRect {
        id: tile
        anchors.left: parent.left
        anchors.leftMargin: Theme.space8
        anchors.verticalCenter: parent.verticalCenter
        width: PanelMetrics.stackTile
        height: width
        radius: Theme.radius7
        color: Theme.wash(Theme.purple, 0.16)

        Symbol {
            anchors.centerIn: parent
            name: "square.stack.3d.up.fill"
            size: Theme.size11
            color: Theme.purple
        }
    }
    Column {
        id: texts
        anchors.left: tile.right
        anchors.leftMargin: Theme.space10
        anchors.right: buttons.left
        anchors.rightMargin: Theme.space8
        anchors.verticalCenter: parent.verticalCenter

        Text {
            width: parent.width
            text: root.name
            textFormat: Text.PlainText
            elide: Text.ElideRight
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
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size11
            Accessible.ignored: true
        }
        HoverHandler {
            id: textHover
        }
    }
    HoverTip {
        text: root.toolTip
        hovered: textHover.hovered
    }
    Row {
        id: buttons
        anchors.right: parent.right
        anchors.rightMargin: Theme.space8
        anchors.verticalCenter: parent.verticalCenter

        IconButton {
            title: qsTr("Start %1").arg(root.name)
            systemImage: "play.fill"
            tint: Theme.success
            onActivated: root.startChosen()
        }
        IconButton {
            title: qsTr("Delete %1").arg(root.name)
            systemImage: "trash"
            onActivated: root.deleteChosen()
        }
    }
}
