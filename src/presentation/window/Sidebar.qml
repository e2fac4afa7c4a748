// The window's sections with their counts, and at the foot that all of this is live. Needs the window's state.
import QtQuick
import Tarnvale.Design
import Tarnvale.Window

Rectangle {
    id: root

    required property MainViewController view

    signal pageChosen // by the pointer: what comes next is for the page

    color: Theme.sidebar

    function step(by: int): void {
        const next = list.itemAtIndex(Math.min(list.count - 1, Math.max(0, view.sidebarIndex + by)));
        if (next)
            view.navigate(next.itemKey);
    }

    ListView {
        id: list
        anchors.top: parent.top
        anchors.topMargin: Theme.space10
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: foot.top
        leftMargin: Theme.space10
        rightMargin: Theme.space10
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        spacing: Theme.space1
        cacheBuffer: 2000
        activeFocusOnTab: true
        keyNavigationEnabled: false
        model: root.view.sidebar
        currentIndex: root.view.sidebarIndex // it has the keyboard, so that screen readers tell it
        section.property: "section"
        section.delegate: SidebarHeading {
            width: list.width - 2 * Theme.space10
        }
        delegate: SidebarRowView {
            width: list.width - 2 * Theme.space10
            isCurrent: root.view.selection === itemKey
            hasFocus: isCurrent && list.activeFocus
            onChosen: {
                root.view.navigate(itemKey);
                root.pageChosen();
            }
        }
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Sections")
        Keys.onUpPressed: root.step(-1)
        Keys.onDownPressed: root.step(1)
    }
    Column {
        id: foot
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.leftMargin: Theme.space16
        anchors.rightMargin: Theme.space16
        anchors.bottomMargin: Theme.space12
        topPadding: Theme.space12
        spacing: Theme.space10

        Item {
            width: parent.width
            height: Math.max(live.implicitHeight, gear.implicitHeight)

            PulsingDot {
                id: dot
                anchors.left: parent.left
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.success
            }
            Column {
                id: live
                anchors.left: dot.right
                anchors.leftMargin: Theme.space10
                anchors.right: gear.left
                anchors.verticalCenter: parent.verticalCenter

                Text {
                    width: parent.width
                    text: qsTr("Live")
                    elide: Text.ElideRight
                    color: Theme.ink
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.size12
                    font.weight: Font.DemiBold
                }
                Text {
                    width: parent.width
                    text: qsTr("Scanning every 2s")
                    elide: Text.ElideRight
                    color: Theme.inkSecondary
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.size105
                }
            }
            IconButton {
                id: gear
                anchors.right: parent.right
                anchors.rightMargin: -Theme.space4
                anchors.verticalCenter: parent.verticalCenter
                title: qsTr("Settings (⌘,)")
                systemImage: "gearshape"
                onActivated: root.view.openSettings()
            }
        }
        Item {
            width: parent.width
            height: Math.max(where.implicitHeight, caps.implicitHeight)
            visible: root.view.hotKeyCaps.length > 0

            Text {
                id: where
                anchors.left: parent.left
                anchors.verticalCenter: parent.verticalCenter
                text: qsTr("Menu bar")
                color: Theme.inkSecondary
                font.family: Theme.fontFamily
                font.pixelSize: Theme.size105
            }
            Keycaps {
                id: caps
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                caps: root.view.hotKeyCaps
            }
        }
    }
    Rectangle {
        anchors.right: parent.right
        width: Theme.stroke
        height: parent.height
        color: Theme.divider
    }
}
