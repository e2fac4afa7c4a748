// A tab whose parts stand one below the other, and scroll where there is no room. What has the keyboard stays in sight.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    default property alias content: column.data

    readonly property Item focused: Window.activeFocusItem

    function isInside(item: Item): bool {
        for (let each = item; each; each = each.parent)
            if (each === column)
                return true;
        return false;
    }

    onFocusedChanged: {
        if (!focused || !isInside(focused))
            return;
        const top = focused.mapToItem(view.contentItem, 0, 0).y - Theme.space20;
        const bottom = focused.mapToItem(view.contentItem, 0, focused.height).y + Theme.space20;
        const wanted = Math.min(top, Math.max(view.contentY, bottom - view.height));
        view.contentY = Math.max(0, Math.min(view.contentHeight - view.height, wanted));
    }

    Flickable {
        id: view
        anchors.fill: parent
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        contentWidth: width
        contentHeight: Math.max(height, column.implicitHeight + 2 * Theme.space20)

        Column {
            id: column
            x: Theme.space20
            y: Theme.space20
            width: view.width - 2 * Theme.space20
            spacing: Theme.space16
        }
    }
    ListScroller {
        target: view
    }
}
