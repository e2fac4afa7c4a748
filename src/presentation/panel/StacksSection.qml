// The saved stacks, each with a button to start and one to delete it. Needs the list's state.
pragma ComponentBehavior: Bound
import QtQuick
import Tarnvale.Design
import Tarnvale.Panel

Column {
    id: root

    required property PortListController list

    leftPadding: PanelMetrics.listMargin
    rightPadding: PanelMetrics.listMargin
    bottomPadding: PanelMetrics.listMargin

    SectionHeader {
        width: root.width - 2 * PanelMetrics.listMargin
        height: PanelMetrics.sectionHeaderHeight
        title: qsTr("Stacks")
        count: root.list.stackCount
    }
    ListView {
        id: view
        width: root.width - 2 * PanelMetrics.listMargin
        height: Math.min(PanelMetrics.maxStacksHeight, PanelMetrics.stackRowHeight * root.list.stackCount)
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        model: root.list.stacks
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Stacks")
        delegate: StackRowView {
            width: view.width
            height: PanelMetrics.stackRowHeight
            onStartChosen: root.list.startStack(stackId)
            onDeleteChosen: root.list.deleteStack(stackId)
        }
        ListScroller {
            target: view
        }
    }
}
