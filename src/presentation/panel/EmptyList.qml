// What stands in place of the rows when there are none. Needs the list's state.
import QtQuick
import Tarnvale.Design
import Tarnvale.Panel

Item {
    id: root

    required property PortListController list
    readonly property bool isSearch: list.query.trim() !== ""

    implicitHeight: state.implicitHeight + 2 * Theme.space36

    EmptyState {
        id: state
        anchors.centerIn: parent
        width: parent.width - 2 * Theme.space24
        symbol: root.isSearch ? "magnifyingglass" : "moon.zzz"
        title: root.isSearch ? qsTr("No ports match “%1”").arg(root.list.query.trim())
                             : (root.list.showAll ? qsTr("Nothing is listening") : qsTr("No dev servers running"))
        actionTitle: root.isSearch || root.list.showAll ? "" : qsTr("Show system processes")
        onActivated: root.list.showSystemProcesses()
    }
}
