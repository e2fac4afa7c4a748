// Cards of one size in as many columns as fit, in a page that scrolls. Only those in sight are made, so a thousand cost
// little. Needs the page, the model and a delegate that is a `CardCell`. The arrow keys go from card to card; one of
// them, the `current`, is reached by Tab. Reports `menuKeyPressed` for the key of the menu on the current card.
import QtQuick
import Tarnvale.Design
import Tarnvale.Pages

Item {
    id: root

    required property PageFrame page
    required property var model
    required property Component delegate
    required property real minimumCardWidth
    required property real cardHeight
    readonly property int count: repeater.count
    property int current: 0

    readonly property int columns: Math.max(1, Math.floor((width + PageMetrics.gap) / (minimumCardWidth + PageMetrics.gap)))
    readonly property real cardWidth: (width - (columns - 1) * PageMetrics.gap) / columns
    readonly property real rowStep: cardHeight + PageMetrics.gap
    // Where this begins in the page's view; scrolling changes it.
    readonly property real viewTop: {
        let y = 0;
        for (let each = root; each && each !== page; each = each.parent)
            y += each.y;
        return y;
    }
    // The rows in sight, and one more at either end.
    readonly property int firstRow: Math.floor(-viewTop / rowStep) - 1
    readonly property int lastRow: Math.floor((page.height - viewTop) / rowStep) + 1

    signal menuKeyPressed(card: Item)

    implicitHeight: count > 0 ? Math.ceil(count / columns) * rowStep - PageMetrics.gap : 0
    Accessible.role: Accessible.List
    onCountChanged: current = Math.max(0, Math.min(current, count - 1))

    Keys.onLeftPressed: root.step(root.LayoutMirroring.enabled ? 1 : -1)
    Keys.onRightPressed: root.step(root.LayoutMirroring.enabled ? -1 : 1)
    Keys.onUpPressed: root.step(-columns)
    Keys.onDownPressed: root.step(columns)
    Keys.onPressed: event => {
        const isMenu = event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier);
        event.accepted = isMenu && count > 0;
        if (event.accepted)
            menuKeyPressed(repeater.itemAt(current).item);
    }

    function step(by: int): void {
        if (current + by < 0 || current + by >= count)
            return;
        current += by;
        repeater.itemAt(current).item.forceActiveFocus(Qt.TabFocusReason);
    }
    // Scrolls so far that the card can be seen.
    function reveal(index: int): void {
        const y = viewTop + Math.floor(index / columns) * rowStep;
        const room = page.height - cardHeight - PageMetrics.gap;
        page.contentY += y < PageMetrics.gap ? y - PageMetrics.gap : Math.max(0, y - room);
    }

    Repeater {
        id: repeater
        model: root.model
        delegate: root.delegate
    }
}
