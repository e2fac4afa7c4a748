// One running server as a card. Needs what is known of its row; reports what the user chose.
import QtQuick
import Tarnvale.Design
import Tarnvale.Pages

Pressable {
    id: root

    required property string subtitle
    required property string toolTip
    required property string accessibleName
    required property string symbol
    required property string logo
    required property string tint
    required property bool inContainer
    required property bool isWeb
    required property string health
    required property string healthSummary
    required property string port

    signal openChosen
    signal menuChosen(x: real, y: real)

    radius: Theme.radius12
    tip: toolTip
    Accessible.name: accessibleName
    Accessible.description: ""
    transform: Translate {
        y: root.isHovered && !Theme.reduceMotion ? -PageMetrics.lift : 0

        Behavior on y {
            NumberAnimation {
                duration: Theme.quick
            }
        }
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: eventPoint => root.menuChosen(eventPoint.position.x, eventPoint.position.y)
    }
    RoundRect {
        anchors.fill: parent
        radius: root.radius
        color: root.isHovered || root.isPressed ? Theme.cardHover : Theme.card
        strokeColor: Theme.cardStroke
        strokeWidth: Theme.stroke
    }
    IconTile {
        id: tile
        anchors.left: parent.left
        anchors.leftMargin: Theme.space14
        anchors.verticalCenter: parent.verticalCenter
        size: PageMetrics.tile
        symbol: root.symbol
        logo: root.logo
        tint: root.tint.startsWith("#") ? root.tint : Theme.tint(root.tint)
        inContainer: root.inContainer
    }
    Column {
        id: texts
        anchors.left: tile.right
        anchors.leftMargin: Theme.space12
        anchors.right: root.isWeb ? open.left : parent.right
        anchors.rightMargin: root.isWeb ? Theme.space4 : Theme.space14
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space2

        Text {
            width: parent.width
            text: root.title
            textFormat: Text.PlainText
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignLeft
            color: Theme.ink
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size13
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
        Text {
            width: parent.width
            text: root.subtitle
            textFormat: Text.PlainText
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignLeft
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size11
            Accessible.ignored: true
        }
        Row {
            spacing: Theme.space6

            HealthDot {
                anchors.verticalCenter: parent.verticalCenter
                size: Theme.space7
                health: root.health
                summary: root.healthSummary
                visible: root.isWeb
                Accessible.ignored: true // the card's name says it
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: ":" + root.port
                textFormat: Text.PlainText
                color: Theme.inkSecondary
                font.family: Theme.monoFamily
                font.pixelSize: Theme.size12
                Accessible.ignored: true
            }
        }
    }
    IconButton {
        id: open
        anchors.right: parent.right
        anchors.rightMargin: Theme.space8
        anchors.verticalCenter: parent.verticalCenter
        visible: root.isWeb
        title: qsTr("Open in Browser")
        systemImage: "arrow.up.right"
        onActivated: root.openChosen()
    }
}
