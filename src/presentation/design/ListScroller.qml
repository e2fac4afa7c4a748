// A thin bar over the right edge of a list that shows where it is scrolled to and can be dragged. Needs the list;
// appears while it moves or the pointer is near, and not at all when everything fits.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    required property Flickable target

    readonly property real visibleShare: target.visibleArea.heightRatio
    readonly property bool isNeeded: visibleShare < 1 && target.height > 0
    readonly property bool isAwake: target.moving || hover.hovered || drag.active || linger.running

    anchors.right: target.right
    anchors.top: target.top
    anchors.bottom: target.bottom
    width: Theme.space10
    visible: isNeeded
    z: 2
    Accessible.ignored: true

    Connections {
        target: root.target
        function onContentYChanged(): void {
            linger.restart();
        }
    }
    Timer {
        id: linger
        interval: Theme.lingerDuration
    }
    HoverHandler {
        id: hover
    }
    RoundRect {
        id: thumb
        anchors.right: parent.right
        anchors.rightMargin: Theme.space2
        width: hover.hovered || drag.active ? Theme.space6 : Theme.space4
        radius: width / 2
        height: Math.max(Theme.space24, root.visibleShare * (root.height - 2 * Theme.space2))
        y: Theme.space2 + root.position() * (root.height - height - 2 * Theme.space2)
        color: Theme.scrollThumb
        opacity: root.isAwake ? 1 : 0

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.fade
            }
        }
    }
    DragHandler {
        id: drag

        property real start: 0

        target: null
        xAxis.enabled: false
        onActiveChanged: if (active) start = root.position()
        onActiveTranslationChanged: if (active) root.moveTo(start + activeTranslation.y / (root.height - thumb.height))
    }

    // How far the list is scrolled, from 0 to 1.
    function position(): real {
        const room = target.contentHeight - target.height;
        return room > 0 ? Math.min(1, Math.max(0, (target.contentY - target.originY) / room)) : 0;
    }
    function moveTo(share: real): void {
        const room = target.contentHeight - target.height;
        target.contentY = target.originY + Math.min(1, Math.max(0, share)) * room;
    }
}
