// A local site to open. Needs its address' host and whether it is secured; reports `activated`.
import QtQuick
import Tarnvale.Design
import Tarnvale.Pages

Pressable {
    id: root

    required property string domain
    required property bool isSecured

    title: qsTr("Open %1").arg(domain)
    tip: title
    radius: Theme.radius12
    accessibleRole: Accessible.Link
    Accessible.description: tag.text

    RoundRect {
        anchors.fill: parent
        radius: root.radius
        color: root.isHovered || root.isPressed ? Theme.cardHover : Theme.card
        strokeColor: Theme.cardStroke
        strokeWidth: Theme.stroke
    }
    SymbolTile {
        id: tile
        anchors.left: parent.left
        anchors.leftMargin: Theme.space12
        anchors.verticalCenter: parent.verticalCenter
        size: PageMetrics.tile - Theme.space4
        symbolSize: Theme.size14
        symbol: root.isSecured ? "lock.fill" : "globe"
        tint: root.isSecured ? Theme.green : Theme.blue
    }
    Column {
        anchors.left: tile.right
        anchors.leftMargin: Theme.space10
        anchors.right: arrow.left
        anchors.rightMargin: Theme.space8
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space3

        Text {
            width: parent.width
            text: root.domain
            textFormat: Text.PlainText
            elide: Text.ElideMiddle
            horizontalAlignment: Text.AlignLeft
            color: Theme.ink
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size13
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
        RoundRect {
            width: Math.ceil(tag.implicitWidth) + 2 * Theme.space5
            height: Math.ceil(tag.implicitHeight) + Theme.space2
            radius: Theme.radius4
            color: root.isSecured ? Theme.wash(Theme.green, 0.14) : Theme.chipFill

            Text {
                id: tag
                anchors.centerIn: parent
                text: root.isSecured ? qsTr("Secured") : qsTr("HTTP")
                textFormat: Text.PlainText
                color: root.isSecured ? Theme.success : Theme.inkSecondary
                font.family: Theme.fontFamily
                font.pixelSize: Theme.size10
                font.weight: Font.Medium
                Accessible.ignored: true
            }
        }
    }
    Symbol {
        id: arrow
        anchors.right: parent.right
        anchors.rightMargin: Theme.space12
        anchors.verticalCenter: parent.verticalCenter
        name: "arrow.up.right"
        size: Theme.size12
        color: root.isHovered ? Theme.ink : Theme.inkTertiary
    }
}
