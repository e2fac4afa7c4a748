// One process on its ports in the window: tile, title with badges, subtitle, what can be done with it while it is active,
// a thumbnail of its page, its numbers. Needs the roles of the list's rows and its state; reports what the user chose.
import QtQuick
import Tarnvale.Design
import Tarnvale.Shared
import Tarnvale.Window

Item {
    id: root

    required property string rowId
    required property string title
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
    required property string agent
    required property string agentLogo
    required property bool isWatched
    required property bool isExposed
    required property string publicUrl
    required property bool hasBadges
    required property string pill
    required property list<string> furtherPills
    required property string morePills
    required property string morePorts
    required property string copyTip
    required property string stopTip
    required property string confirmTitle
    required property PagePictures pictures
    property bool isSelected: false
    property bool isHovered: false
    property bool isArmed: false
    property bool isCopied: false
    property bool hasFocus: false
    readonly property bool isActive: isSelected || isHovered
    readonly property bool isRoomy: width > 6 * WindowMetrics.thumbWidth

    signal pointerEntered
    signal pointerLeft
    signal chosen
    signal openChosen
    signal copyChosen
    signal stopChosen
    signal menuChosen(item: Item, x: real, y: real)

    Accessible.role: Accessible.ListItem
    Accessible.name: accessibleName
    Accessible.selected: isSelected
    Accessible.selectable: true
    Accessible.onPressAction: root.chosen()

    RoundRect {
        anchors.fill: parent
        anchors.topMargin: Theme.space1
        anchors.bottomMargin: Theme.space1
        radius: Theme.radius10
        color: root.isSelected ? Theme.selectionFill : Theme.rowHover
        visible: root.isActive
        strokeColor: root.hasFocus ? Theme.focusRing : Theme.selectionStroke
        strokeWidth: root.isSelected ? Theme.stroke : 0
    }
    HoverHandler {
        onHoveredChanged: hovered ? root.pointerEntered() : root.pointerLeft()
    }
    TapHandler {
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onTapped: (eventPoint, button) => {
            root.chosen();
            if (button === Qt.RightButton)
                root.menuChosen(root, eventPoint.position.x, eventPoint.position.y);
        }
        onDoubleTapped: (eventPoint, button) => {
            if (button === Qt.LeftButton)
                root.openChosen();
        }
    }
    IconTile {
        id: tile
        anchors.left: parent.left
        anchors.leftMargin: Theme.space10
        anchors.verticalCenter: parent.verticalCenter
        size: WindowMetrics.tile
        symbol: root.symbol
        logo: root.logo
        tint: root.tint.startsWith("#") ? root.tint : Theme.tint(root.tint)
        inContainer: root.inContainer

        Loader {
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.rightMargin: -WindowMetrics.healthDotOverhang
            anchors.bottomMargin: -WindowMetrics.healthDotOverhang
            active: root.health !== ""
            sourceComponent: HealthDot {
                size: WindowMetrics.healthDot
                ringColor: Theme.page
                health: root.health
                summary: root.healthSummary
            }
        }
    }
    Item {
        id: texts
        anchors.left: tile.right
        anchors.leftMargin: Theme.space12
        anchors.right: trailing.left
        anchors.rightMargin: Theme.space10
        anchors.verticalCenter: parent.verticalCenter
        height: titleText.height + (subtitleText.visible ? Theme.space2 + subtitleText.height : 0)

        Text {
            id: titleText
            anchors.left: parent.left
            width: Math.min(Math.ceil(implicitWidth), texts.width - (badges.active ? badges.width + Theme.space6 : 0))
            text: root.title
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: Theme.ink
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size13
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
        Loader { // most rows have none
            id: badges
            anchors.left: titleText.right
            anchors.leftMargin: Theme.space6
            anchors.verticalCenter: titleText.verticalCenter
            active: root.hasBadges
            sourceComponent: RowBadges {
                agent: root.agent
                agentLogo: root.agentLogo
                isWatched: root.isWatched
                isExposed: root.isExposed
                publicUrl: root.publicUrl
            }
        }
        Text {
            id: subtitleText
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            visible: text !== ""
            text: root.subtitle
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size115
            Accessible.ignored: true
        }

        Loader {
            anchors.fill: parent
            active: root.isHovered
            sourceComponent: TipArea {
                text: root.toolTip
            }
        }
    }
    Row {
        id: trailing
        anchors.right: parent.right
        anchors.rightMargin: Theme.space10
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space6

        Loader { // only the row that somebody is at
            anchors.verticalCenter: parent.verticalCenter
            visible: root.isArmed || root.isHovered || (root.isSelected && root.isRoomy)
            active: visible
            sourceComponent: RowActions {
                isWeb: root.isWeb
                isArmed: root.isArmed
                isCopied: root.isCopied
                copyTip: root.copyTip
                stopTip: root.stopTip
                confirmTitle: root.confirmTitle
                onOpenChosen: root.openChosen()
                onCopyChosen: root.copyChosen()
                onStopChosen: root.stopChosen()
                onMenuChosen: (item, x, y) => root.menuChosen(item, x, y)
            }
        }
        Loader {
            anchors.verticalCenter: parent.verticalCenter
            active: root.isWeb && root.width > 8 * WindowMetrics.thumbWidth
            visible: item?.hasPicture ?? false
            sourceComponent: WebPreviewImage {
                width: WindowMetrics.thumbWidth
                height: WindowMetrics.thumbHeight
                cornerRadius: Theme.radius5
                pictures: root.pictures
                port: parseInt(root.pill)
            }
        }
        PortPill {
            anchors.verticalCenter: parent.verticalCenter
            text: root.pill
            label: qsTr("Port %1").arg(text)
        }
        Loader { // most processes have one port
            anchors.verticalCenter: parent.verticalCenter
            active: root.furtherPills.length > 0
            visible: active
            sourceComponent: FurtherPills {
                numbers: root.furtherPills
                more: root.morePills
                moreNumbers: root.morePorts
            }
        }
    }
}
