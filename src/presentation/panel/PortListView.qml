// The panel's one column: search, chips, the ports in sections, stacks, recent activity, error and footer. Needs the
// list's and the footer's state. The search field holds the keyboard from the moment the panel opens.
import QtQuick
import Tarnvale.Design
import Tarnvale.Panel

Column {
    id: root

    required property PortListController list
    required property PanelFooterController footer
    property real maxHeight: Infinity

    // All but the rows; written out, because the column's own height depends on the rows.
    readonly property real fixedHeight: search.height + (chips.visible ? chips.height : 0)
        + (stacks.visible ? stacks.height + Theme.stroke : 0) + (recent.visible ? recent.height + Theme.stroke : 0)
        + (trouble.visible ? trouble.height : 0) + foot.height + 2 * Theme.stroke

    SearchRow {
        id: search
        width: parent.width
        list: root.list
    }
    ChipRow {
        id: chips
        width: parent.width
        list: root.list
        visible: root.list.chips.length > 1 || root.list.stoppableCount > 0
    }
    Divider {
        width: parent.width
    }
    PortRows {
        width: parent.width
        list: root.list
        maxHeight: root.maxHeight - root.fixedHeight
        visible: root.list.rowCount > 0
    }
    EmptyList {
        width: parent.width
        list: root.list
        visible: root.list.rowCount === 0
    }
    Divider {
        width: parent.width
        visible: root.list.stackCount > 0
    }
    StacksSection {
        id: stacks
        width: parent.width
        list: root.list
        visible: root.list.stackCount > 0
    }
    Divider {
        width: parent.width
        visible: root.list.eventCount > 0
    }
    RecentSection {
        id: recent
        width: parent.width
        list: root.list
        visible: root.list.eventCount > 0
    }
    Item {
        id: trouble
        width: parent.width
        implicitHeight: banner.implicitHeight + 2 * Theme.space8
        visible: root.list.error !== ""

        Banner {
            id: banner
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.leftMargin: Theme.space10
            anchors.rightMargin: Theme.space10
            anchors.verticalCenter: parent.verticalCenter
            text: root.list.error
            onDismissed: root.list.dismissError()
        }
    }
    Divider {
        width: parent.width
    }
    PanelFooter {
        id: foot
        width: parent.width
        footer: root.footer
    }
}
