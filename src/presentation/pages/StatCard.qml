// A number that matters, with its symbol and title. Needs all of them and the tint; `detail` says more below. Reports
// `activated`, since the number leads to what it counts.
import QtQuick
import Tarnvale.Design
import Tarnvale.Pages

Pressable {
    id: root

    required property int value
    required property string symbol
    required property color tint
    property string detail: ""
    property real shownValue: value

    implicitHeight: PageMetrics.statCardHeight
    radius: Theme.radius12
    Accessible.name: title + ", " + value + (detail === "" ? "" : ", " + detail)
    transform: Translate {
        y: root.isHovered && !Theme.reduceMotion ? -PageMetrics.lift : 0

        Behavior on y {
            NumberAnimation {
                duration: Theme.quick
            }
        }
    }

    Behavior on shownValue {
        NumberAnimation {
            duration: Theme.springDuration
            easing.type: Theme.springEasing
        }
    }
    RoundRect {
        anchors.fill: parent
        radius: root.radius
        color: root.isHovered || root.isPressed ? Theme.cardHover : Theme.card
        strokeColor: Theme.cardStroke
        strokeWidth: Theme.stroke
    }
    SymbolTile {
        id: tile
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: Theme.space14
        size: PageMetrics.smallTile + Theme.space4
        symbolSize: Theme.size14
        fillOpacity: 0.16
        symbol: root.symbol
        tint: root.tint
    }
    Text {
        anchors.left: parent.left
        anchors.leftMargin: Theme.space14
        anchors.right: tile.left
        anchors.rightMargin: Theme.space8
        anchors.top: parent.top
        anchors.topMargin: Theme.space10
        text: Math.round(root.shownValue)
        textFormat: Text.PlainText
        elide: Text.ElideRight
        color: Theme.ink
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size28
        font.weight: Font.Bold
        Accessible.ignored: true
    }
    Column {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: Theme.space14
        anchors.bottomMargin: Theme.space12

        Text {
            width: parent.width
            text: root.title
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size12
            font.weight: Font.Medium
            Accessible.ignored: true
        }
        Text { // keeps its line when there is nothing to say, so that the cards stay level
            width: parent.width
            text: root.detail
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: Theme.inkTertiary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size11
            Accessible.ignored: true
        }
    }
}
