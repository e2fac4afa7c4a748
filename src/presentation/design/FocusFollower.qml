// Scrolls what has the keyboard into sight. Needs the scrolling view whose content may have it.
import QtQuick

Item {
    id: root

    required property Flickable target
    readonly property Item focused: Window.activeFocusItem

    onFocusedChanged: if (focused && focused.activeFocusOnTab && isWithin(focused)) reveal(focused)

    function isWithin(item: Item): bool {
        for (let each = item; each; each = each.parent)
            if (each === target.contentItem)
                return true;
        return false;
    }
    function reveal(item: Item): void {
        const top = item.mapToItem(target.contentItem, 0, 0).y - Theme.space16;
        const bottom = top + item.height + 2 * Theme.space16;
        const last = Math.max(0, target.contentHeight - target.height);
        if (top < target.contentY)
            target.contentY = Math.max(0, top);
        else if (bottom > target.contentY + target.height)
            target.contentY = Math.min(last, bottom - target.height);
    }
}
