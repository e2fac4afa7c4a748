// What started and stopped lately, folded away until the user asks for it. Needs the list's state.
import QtQuick
import Tarnvale.Design
import Tarnvale.Panel

Column {
    id: root

    required property PortListController list
    readonly property int inner: width - 2 * PanelMetrics.listMargin
    readonly property int few: 6
    readonly property int many: 30

    leftPadding: PanelMetrics.listMargin
    rightPadding: PanelMetrics.listMargin

    Item {
        width: root.inner
        height: PanelMetrics.recentHeaderHeight

        Pressable {
            anchors.left: parent.left
            anchors.leftMargin: Theme.space8 - Theme.space6
            anchors.verticalCenter: parent.verticalCenter
            width: head.implicitWidth + 2 * Theme.space6
            height: parent.height - Theme.space8
            title: qsTr("Recent")
            Accessible.checkable: true
            Accessible.checked: root.list.showRecent
            onActivated: root.list.showRecent = !root.list.showRecent

            Row {
                id: head
                anchors.centerIn: parent
                spacing: Theme.space6

                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: qsTr("RECENT")
                    textFormat: Text.PlainText
                    color: Theme.inkSecondary
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.size10
                    font.weight: Font.DemiBold
                    font.letterSpacing: Theme.tracking
                    Accessible.ignored: true
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: root.list.eventCount
                    color: Theme.inkTertiary
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.size10
                    font.weight: Font.Medium
                    Accessible.ignored: true
                }
                Symbol {
                    anchors.verticalCenter: parent.verticalCenter
                    name: "chevron.right"
                    size: Theme.size8
                    color: Theme.inkTertiary
                    turns: true
                    rotation: root.list.showRecent ? 90 : (root.LayoutMirroring.enabled ? 180 : 0)

                    Behavior on rotation {
                        NumberAnimation {
                            duration: Theme.fade
                            easing.type: Easing.OutCubic
                        }
                    }
                }
            }
        }
        LinkButton {
            anchors.right: parent.right
            anchors.rightMargin: Theme.space8
            anchors.verticalCenter: parent.verticalCenter
            visible: root.list.showRecent
            title: qsTr("Clear")
            tip: qsTr("Clear history")
            textSize: Theme.size11
            color: Theme.inkSecondary
            onActivated: root.list.clearHistory()
        }
    }
    Item {
        width: root.inner
        height: Math.min(PanelMetrics.maxRecentHeight, PanelMetrics.eventRowHeight * root.list.shownEvents
                         + PanelMetrics.dayHeight * root.list.shownDays)
        visible: root.list.showRecent

        ListView {
            id: view
            anchors.fill: parent
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            model: root.list.events
            section.property: "day"
            section.delegate: Text {
                required property string section

                height: PanelMetrics.dayHeight
                leftPadding: Theme.space8
                verticalAlignment: Text.AlignVCenter
                text: section
                textFormat: Text.PlainText
                color: Theme.inkTertiary
                font.family: Theme.fontFamily
                font.pixelSize: Theme.size105
                font.weight: Font.Medium
            }
            delegate: EventRowView {
                width: view.width
                height: PanelMetrics.eventRowHeight
            }
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Recent activity")
        }
        ListScroller {
            target: view
        }
    }
    Item {
        width: root.inner
        height: more.implicitHeight + Theme.space10
        visible: root.list.showRecent && root.list.eventCount > root.few

        LinkButton {
            id: more
            anchors.left: parent.left
            anchors.leftMargin: Theme.space8
            anchors.verticalCenter: parent.verticalCenter
            textSize: Theme.size11
            title: root.list.showAllRecent ? qsTr("Show less")
                                           : qsTr("Show all (%1)").arg(Math.min(root.list.eventCount, root.many))
            onActivated: root.list.showAllRecent = !root.list.showAllRecent
        }
    }
}
