// One process on its ports: tile, title with badges, subtitle, what can be done with it while it is active, and its
// numbers. Needs the roles of the list's rows and its state; reports what the user chose.
import QtQuick
import Tarnvale.Design
import Tarnvale.Panel
import Tarnvale.Shared

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
    property bool animatesChanges: false
    property bool isActive: false
    property bool isSelected: false
    property bool isArmed: false
    property bool isCopied: false

    signal pointerEntered
    signal pointerLeft
    signal openChosen
    signal copyChosen
    signal stopChosen
    signal menuChosen(item: Item, x: real, y: real)

    transform: Translate {
        id: shift
    }
    ListView.onAdd: if (animatesChanges) arrival.start()
    ListView.onRemove: if (animatesChanges) departure.start()

    ParallelAnimation {
        id: arrival

        NumberAnimation {
            target: root
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.springDuration
        }
        NumberAnimation {
            target: shift
            property: "y"
            from: -PanelMetrics.enterShift
            to: 0
            duration: Theme.springDuration
            easing.type: Theme.springEasing
        }
    }
    SequentialAnimation {
        id: departure

        PropertyAction {
            target: root
            property: "ListView.delayRemove"
            value: true
        }
        ScriptAction {
            script: arrival.stop()
        }
        NumberAnimation {
            target: root
            property: "opacity"
            to: 0
            duration: Theme.fade
        }
        PropertyAction {
            target: root
            property: "ListView.delayRemove"
            value: false
        }
    }

    Accessible.role: Accessible.ListItem
    Accessible.name: accessibleName
    Accessible.selected: isSelected
    Accessible.selectable: true

    RoundRect {
        anchors.fill: parent
        radius: Theme.radius8
        color: Theme.hoverFill
        opacity: root.isActive ? 1 : 0
        strokeColor: Theme.focusRing
        strokeWidth: root.isSelected && Theme.highContrast ? Theme.stroke : 0

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.quick
                easing.type: Easing.OutCubic
            }
        }
    }
    HoverHandler {
        onHoveredChanged: hovered ? root.pointerEntered() : root.pointerLeft()
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: eventPoint => root.menuChosen(root, eventPoint.position.x, eventPoint.position.y)
    }
    IconTile {
        id: tile
        anchors.left: parent.left
        anchors.leftMargin: Theme.space8
        anchors.verticalCenter: parent.verticalCenter
        size: PanelMetrics.tile
        symbol: root.symbol
        logo: root.logo
        tint: root.tint.startsWith("#") ? root.tint : Theme.tint(root.tint)
        inContainer: root.inContainer

        Loader {
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.rightMargin: -PanelMetrics.healthDotOverhang
            anchors.bottomMargin: -PanelMetrics.healthDotOverhang
            active: root.health !== ""
            sourceComponent: HealthDot {
                size: PanelMetrics.healthDot
                health: root.health
                summary: root.healthSummary
            }
        }
    }
    Item {
        id: texts
        anchors.left: tile.right
        anchors.leftMargin: Theme.space10
        anchors.right: trailing.left
        anchors.rightMargin: Theme.space8
        anchors.verticalCenter: parent.verticalCenter
        height: titleText.height + (subtitleText.visible ? Theme.space1 + subtitleText.height : 0)

        Text {
            id: titleText
            anchors.left: parent.left
            width: Math.min(Math.ceil(implicitWidth), texts.width - (badges.active ? badges.width + Theme.space5 : 0))
            text: root.title
            textFormat: Text.PlainText
            elide: Text.ElideRight
            maximumLineCount: 1
            color: Theme.ink
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size13
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
        Loader { // most rows have none
            id: badges
            anchors.left: titleText.right
            anchors.leftMargin: Theme.space5
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
            maximumLineCount: 1
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size11
            Accessible.ignored: true
        }

        Loader {
            anchors.fill: parent
            active: root.isActive
            sourceComponent: TipArea {
                text: root.toolTip
            }
        }
    }
    Row {
        id: trailing
        anchors.right: parent.right
        anchors.rightMargin: Theme.space8
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space6

        Loader { // only the row that somebody is at
            anchors.verticalCenter: parent.verticalCenter
            visible: opacity > 0
            opacity: root.isActive || root.isArmed ? 1 : 0
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

            Behavior on opacity {
                NumberAnimation {
                    duration: Theme.quick
                }
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
