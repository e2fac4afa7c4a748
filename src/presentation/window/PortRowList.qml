// The rows of a page of ports under pinned heads. Needs the page's state; keeps the selected row in sight, and takes the
// keys of the list while it has the focus.
import QtQuick
import Tarnvale.Design
import Tarnvale.Window

FocusScope {
    id: root

    required property PortsController ports

    function menuAt(item: Item, rowId: string, x: real, y: real): void {
        root.ports.requestMenu(rowId, item.mapToGlobal(x, y));
    }
    function reveal(index: int): void {
        if (index < 0)
            return;
        const before = view.contentY;
        view.positionViewAtIndex(index, ListView.Contain);
        const after = view.contentY - (view.contentY < before ? WindowMetrics.sectionHeader : 0);
        view.contentY = before;
        scroll.to = Math.max(view.originY - view.topMargin, after);
        scroll.restart();
    }

    Keys.onPressed: event => event.accepted = root.ports.handleKey(event.key, event.modifiers, event.isAutoRepeat)

    ListView {
        id: view
        anchors.fill: parent
        anchors.leftMargin: Theme.space16
        anchors.rightMargin: Theme.space16
        topMargin: Theme.space2
        bottomMargin: Theme.space14
        clip: true
        focus: true
        keyNavigationEnabled: false // its selection isn't the view's
        activeFocusOnTab: true
        boundsBehavior: Flickable.StopAtBounds
        cacheBuffer: 0 // a row is made in less than a millisecond, and those ahead would be made with each key of a search
        model: root.ports.rows
        currentIndex: root.ports.selectedIndex // it has the keyboard, so that screen readers tell it
        highlightFollowsCurrentItem: false
        section.property: "section"
        section.labelPositioning: ViewSection.InlineLabels | ViewSection.CurrentLabelAtStart
        section.delegate: PortSectionHeader {
            width: view.width
            height: WindowMetrics.sectionHeader
            sections: root.ports.sections
            symbols: root.ports.sectionSymbols
            counts: root.ports.sectionCounts
        }
        delegate: WindowRowView {
            width: view.width
            height: WindowMetrics.row
            pictures: root.ports.pictures
            isSelected: root.ports.selection === rowId
            isHovered: root.ports.hovered === rowId
            isArmed: root.ports.armedKill === rowId
            isCopied: root.ports.copied === rowId
            hasFocus: isSelected && view.activeFocus
            onPointerEntered: root.ports.setHovered(rowId)
            onPointerLeft: root.ports.clearHovered(rowId)
            onChosen: {
                root.ports.select(rowId);
                view.forceActiveFocus();
            }
            onOpenChosen: root.ports.openInBrowser(rowId)
            onCopyChosen: root.ports.copyAddress(rowId)
            onStopChosen: root.ports.stopInTwoSteps(rowId)
            onMenuChosen: (item, x, y) => root.menuAt(item, rowId, x, y)
        }
        moveDisplaced: view.slide
        addDisplaced: view.slide
        removeDisplaced: view.slide
        move: view.slide

        readonly property Transition slide: Transition {
            enabled: Theme.springDuration > 0

            NumberAnimation {
                property: "y"
                duration: Theme.springDuration
                easing.type: Theme.springEasing
            }
        }
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Listening ports")

        NumberAnimation {
            id: scroll
            target: view
            property: "contentY"
            duration: Theme.fade
            easing.type: Easing.OutCubic
        }
    }
    ListScroller {
        target: view
        anchors.right: root.right
    }
    Connections {
        target: root.ports
        function onSelectedIndexChanged(): void {
            root.reveal(root.ports.selectedIndex);
        }
        function onMenuKeyPressed(rowId: string): void {
            const item = view.itemAtIndex(root.ports.selectedIndex);
            if (item)
                root.menuAt(item, rowId, item.width / 2, item.height);
        }
    }
}
