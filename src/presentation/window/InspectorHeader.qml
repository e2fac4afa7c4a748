// Who the inspected port is, and how it does. Needs the inspector's facts.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    required property var facts

    implicitHeight: Math.max(tile.height, texts.implicitHeight)

    IconTile {
        id: tile
        anchors.left: parent.left
        anchors.top: parent.top
        size: WindowMetrics.headTile
        symbol: root.facts.symbol
        logo: root.facts.logo
        tint: root.facts.tint.startsWith("#") ? root.facts.tint : Theme.tint(root.facts.tint)
        inContainer: root.facts.inContainer
    }
    Column {
        id: texts
        anchors.left: tile.right
        anchors.leftMargin: Theme.space12
        anchors.right: parent.right
        spacing: Theme.space2

        Text {
            id: title
            width: parent.width
            text: root.facts.title
            textFormat: Text.PlainText
            elide: Text.ElideMiddle
            color: Theme.ink
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size19
            font.weight: Font.Bold
            Accessible.role: Accessible.Heading
            Accessible.name: text

            HoverHandler {
                id: titleHover
            }
            HoverTip {
                text: title.truncated ? title.text : ""
                hovered: titleHover.hovered
            }
        }
        Text {
            id: subtitle
            width: parent.width
            text: root.facts.subtitle
            visible: text !== ""
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size12

            HoverHandler {
                id: subtitleHover
            }
            HoverTip {
                text: subtitle.truncated ? subtitle.text : ""
                hovered: subtitleHover.hovered
            }
        }
        Item {
            width: 1
            height: Theme.space4
        }
        Row {
            spacing: Theme.space8

            HealthChip {
                visible: root.facts.chip !== ""
                text: root.facts.chip
                tint: root.facts.chipTint
                tip: root.facts.chipTip
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                visible: text !== ""
                text: root.facts.responseTime
                color: Theme.inkSecondary
                font.family: Theme.fontFamily
                font.pixelSize: Theme.size115
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                visible: text !== ""
                text: root.facts.uptime
                color: Theme.inkSecondary
                font.family: Theme.fontFamily
                font.pixelSize: Theme.size115
            }
        }
    }
}
