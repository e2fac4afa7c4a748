// What ran and when, by process or by port, under its days. Needs its state.
import QtQuick
import Tarnvale.Design
import Tarnvale.Pages

Item {
    id: root

    required property ActivityController controller
    readonly property real inner: PageMetrics.contentWidth(width)

    ListView {
        id: view
        anchors.fill: parent
        bottomMargin: PageMetrics.margin
        spacing: PageMetrics.gap
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: false
        highlightFollowsCurrentItem: false
        currentIndex: -1 // a current row would take the focus from the head
        model: root.controller.groups
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Activity")

        header: Item {
            width: view.width
            height: PageMetrics.margin + PageMetrics.headHeight + Theme.space12

            PageHeader {
                id: head
                anchors.horizontalCenter: parent.horizontalCenter
                y: PageMetrics.margin
                width: root.inner
                height: PageMetrics.headHeight
                title: qsTr("Activity")
                subtitle: root.controller.subtitle

                SegmentedPicker {
                    title: qsTr("Group")
                    options: [qsTr("By Process"), qsTr("By Port")]
                    current: root.controller.grouping
                    onChosen: index => root.controller.grouping = index
                }
                PushButton {
                    title: root.controller.confirmClear ? qsTr("Click to Clear") : qsTr("Clear")
                    kind: "destructive"
                    isArmed: root.controller.confirmClear
                    enabled: root.controller.eventCount > 0
                    onActivated: root.controller.clearInTwoSteps()
                }
            }
        }
        section.property: "day"
        section.delegate: Item {
            required property string section

            width: view.width
            height: PageMetrics.dayHeight

            Text {
                anchors.horizontalCenter: parent.horizontalCenter
                anchors.bottom: parent.bottom
                anchors.bottomMargin: Theme.space6
                width: root.inner
                text: parent.section
                textFormat: Text.PlainText
                elide: Text.ElideRight
                color: Theme.inkSecondary
                font.family: Theme.fontFamily
                font.pixelSize: Theme.size12
                font.weight: Font.DemiBold
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
        }
        delegate: Item {
            id: cell

            required property string title
            required property string runCount
            required property list<string> names
            required property list<string> ranges
            required property list<string> rangeTips
            required property list<string> lengths
            required property var areRunning
            required property bool isRunning

            width: view.width
            height: card.implicitHeight

            SessionGroup {
                id: card
                anchors.horizontalCenter: parent.horizontalCenter
                width: root.inner
                title: cell.title
                runCount: cell.runCount
                names: cell.names
                ranges: cell.ranges
                rangeTips: cell.rangeTips
                lengths: cell.lengths
                areRunning: cell.areRunning
                isRunning: cell.isRunning
                byPort: root.controller.grouping === 1
            }
        }
    }
    EmptyPage {
        anchors.fill: parent
        anchors.topMargin: view.headerItem ? view.headerItem.height : 0
        visible: root.controller.eventCount === 0
        symbol: "clock.arrow.circlepath"
        title: qsTr("No activity yet")
        message: qsTr("Servers starting and stopping are recorded here, even while Tarnvale's window is closed.")
    }
    ListScroller {
        target: view
    }
}
