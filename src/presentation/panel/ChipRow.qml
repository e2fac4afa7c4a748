// The filters that have something to show, and the button that stops what is shown. One highlight slides between the
// chips. Needs the list's state.
import QtQuick
import Tarnvale.Design
import Tarnvale.Panel

Item {
    id: root

    required property PortListController list
    property Item selected: null

    implicitHeight: chips.implicitHeight + Theme.space8

    RoundRect {
        id: highlight
        x: chips.x + (root.selected ? root.selected.x : 0)
        width: root.selected ? root.selected.width : 0
        height: chips.implicitHeight
        radius: height / 2
        color: Theme.selectedFill
        visible: root.selected !== null

        Behavior on x {
            enabled: root.list.isOpen
            NumberAnimation {
                duration: Theme.springDuration
                easing.type: Theme.springEasing
            }
        }
        Behavior on width {
            enabled: root.list.isOpen
            NumberAnimation {
                duration: Theme.springDuration
                easing.type: Theme.springEasing
            }
        }
    }
    Row {
        id: chips
        anchors.left: parent.left
        anchors.leftMargin: Theme.space10
        spacing: Theme.space4
        visible: root.list.chips.length > 1

        Repeater {
            model: root.list.chips

            Chip {
                id: chip

                required property int modelData

                title: root.list.chipTitle(modelData)
                isSelected: root.list.filter === modelData
                drawsSelection: false
                onIsSelectedChanged: if (isSelected) root.selected = chip
                Component.onCompleted: if (isSelected) root.selected = chip
                onActivated: root.list.filter = modelData
            }
        }
    }
    ArmedButton {
        anchors.right: parent.right
        anchors.rightMargin: Theme.space10
        visible: root.list.stoppableCount > 0
        title: qsTr("Stop Visible")
        armedTitle: qsTr("Stop %1?").arg(root.list.stoppableCount)
        armed: root.list.armedStopAll
        isQuiet: false
        idleTip: qsTr("Stop every dev process shown (services, containers and system processes are skipped)")
        armedTip: root.list.stoppableCount === 1 ? qsTr("Click again to stop 1 process")
                                                 : qsTr("Click again to stop %1 processes").arg(root.list.stoppableCount)
        onActivated: root.list.stopVisibleInTwoSteps()
    }
}
