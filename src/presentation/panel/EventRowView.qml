// One start or stop of a server. Needs the roles of the events' rows.
import QtQuick
import Tarnvale.Design
import Tarnvale.Panel

Item {
    id: root

    required property string name
    required property string ports
    required property string age
    required property string date
    required property bool isStart

    readonly property color mark: isStart ? Theme.success : Theme.gray

    Accessible.role: Accessible.ListItem
    Accessible.name: name + ", " + ports + ", " + age

    RoundRect {
        id: tile
        anchors.left: parent.left
        anchors.leftMargin: Theme.space8
        anchors.verticalCenter: parent.verticalCenter
        width: PanelMetrics.eventTile
        height: width
        radius: Theme.radius6
        color: Theme.wash(root.mark, 0.16)
        Accessible.role: Accessible.Graphic
        Accessible.name: root.isStart ? qsTr("Started") : qsTr("Stopped")

        Symbol {
            anchors.centerIn: parent
            name: root.isStart ? "play.fill" : "stop.fill"
            size: Theme.size8
            color: root.mark
        }
    }
    Column {
        anchors.left: tile.right
        anchors.leftMargin: Theme.space8
        anchors.right: age.left
        anchors.rightMargin: Theme.space8
        anchors.verticalCenter: parent.verticalCenter

        Text {
            width: parent.width
            text: root.name
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: Theme.ink
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size12
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
        Text {
            width: parent.width
            text: root.ports
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size105
            Accessible.ignored: true
        }
    }
    Text {
        id: age
        anchors.right: parent.right
        anchors.rightMargin: Theme.space8
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
