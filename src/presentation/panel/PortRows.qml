// The ports under pinned section heads, as tall as they need until the cap. Needs the list's state; keeps the selected
// row in sight.
import QtQuick
import Tarnvale.Design
import Tarnvale.Panel

Item {
    id: root

    required property PortListController list
    property real maxHeight: Infinity // never less than a few rows

    implicitHeight: Math.min(PanelMetrics.maxListHeight, Math.max(3 * PanelMetrics.rowHeight, maxHeight),
                             PanelMetrics.rowHeight * list.rowCount
                             + PanelMetrics.sectionHeaderHeight * list.sections.length + PanelMetrics.listMargin)

    function menuAt(item: Item, rowId: string, x: real, y: real): void {
        const place = item.mapToGlobal(x, y);
        root.list.requestMenu(rowId, place);
    }
    function reveal(index: int): void {
        if (index < 0)
            return;
        const before = view.contentY;
        view.positionViewAtIndex(index, ListView.Contain);
        const after = view.contentY - (view.contentY < before ? PanelMetrics.sectionHeaderHeight : 0);
        view.contentY = before;
        scroll.to = Math.max(view.originY - view.topMargin, after);
        scroll.restart();
    }

    ListView {
        id: view
        anchors.fill: parent
        anchors.leftMargin: PanelMetrics.listMargin
        anchors.rightMargin: PanelMetrics.listMargin
        bottomMargin: PanelMetrics.listMargin
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        cacheBuffer: 2 * PanelMetrics.rowHeight
        model: root.list.rows
        section.property: "section"
        section.labelPositioning: ViewSection.InlineLabels | ViewSection.CurrentLabelAtStart
        section.delegate: SectionHeader {
            required property string section

            width: view.width
            height: PanelMetrics.sectionHeaderHeight
            title: section
            count: root.list.sectionCounts[root.list.sections.indexOf(section)] ?? 0
        }
        delegate: PortRowView {
            width: view.width
            height: PanelMetrics.rowHeight
            animatesChanges: root.list.isOpen && Theme.springDuration > 0
            isSelected: root.list.selection === rowId
            isActive: isSelected || root.list.hovered === rowId
            isArmed: root.list.armedKill === rowId
            isCopied: root.list.copied === rowId
            onPointerEntered: root.list.setHovered(rowId)
            onPointerLeft: root.list.clearHovered(rowId)
            onOpenChosen: root.list.openInBrowser(rowId)
            onCopyChosen: root.list.copyAddress(rowId)
            onStopChosen: root.list.stopInTwoSteps(rowId)
            onMenuChosen: (item, x, y) => root.menuAt(item, rowId, x, y)
        }
        moveDisplaced: view.slide
        addDisplaced: view.slide
        removeDisplaced: view.slide
        move: view.slide

        readonly property Transition slide: Transition {
            enabled: root.list.isOpen

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
    }
    Connections {
        target: root.list
        function onSelectionChanged(): void {
            root.reveal(root.list.selectedIndex);
        }
        function onMenuKeyPressed(rowId: string): void {
            const item = view.itemAtIndex(root.list.selectedIndex);
            if (item)
                root.menuAt(item, rowId, item.width / 2, item.height);
        }
    }
}
