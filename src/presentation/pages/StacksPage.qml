// The saved stacks, each with what of it runs, and the way to a new one. Needs its state.
import QtQuick
import Tarnvale.Design
import Tarnvale.Pages

Item {
    id: root

    required property StacksController controller
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
        model: root.controller.stacks
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Stacks")

        header: Item {
            width: view.width
            height: PageMetrics.margin + PageMetrics.headHeight + Theme.space24

            PageHeader {
                id: head
                anchors.horizontalCenter: parent.horizontalCenter
                y: PageMetrics.margin
                width: root.inner
                height: PageMetrics.headHeight
                title: qsTr("Stacks")
                subtitle: qsTr("Start a whole project — server, queue, Vite — in one click.")

                PushButton {
                    title: qsTr("New from Folder…")
                    symbol: "folder.badge.plus"
                    onActivated: root.controller.newFromFolder()
                }
            }
        }
        delegate: Item {
            id: cell

            required property string stackId
            required property string name
            required property string progress
            required property list<string> commands
            required property var areUp
            required property string folder
            required property string folderTip
            required property bool isRunning
            required property bool isArmed

            width: view.width
            height: card.implicitHeight

            StackCard {
                id: card
                anchors.horizontalCenter: parent.horizontalCenter
                width: root.inner
                stackId: cell.stackId
                name: cell.name
                progress: cell.progress
                commands: cell.commands
                areUp: cell.areUp
                folder: cell.folder
                folderTip: cell.folderTip
                isRunning: cell.isRunning
                isArmed: cell.isArmed
                onStartChosen: root.controller.startStack(cell.stackId)
                onDeleteChosen: root.controller.deleteInTwoSteps(cell.stackId)
            }
        }
    }
    EmptyPage {
        anchors.fill: parent
        anchors.topMargin: view.headerItem ? view.headerItem.height : 0
        visible: root.controller.stackCount === 0
        symbol: "square.stack.3d.up"
        title: qsTr("No stacks yet")
        message: qsTr("Pick a project folder and Tarnvale finds its start commands — or right-click a running project and choose “Save as Stack”.")
    }
    ListScroller {
        target: view
    }
}
