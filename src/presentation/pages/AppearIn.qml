// The entrance of a block: it fades in and rises a little, later the higher its `order`. Needs the block. Where the
// desktop asks for no motion the block simply stands there.
import QtQuick
import Tarnvale.Design
import Tarnvale.Pages

SequentialAnimation {
    id: root

    required property Item block
    property int order: 0

    property Translate shift: Translate {}

    running: Theme.fade > 0
    onStarted: {
        block.transform = [shift];
        block.opacity = 0;
        shift.y = PageMetrics.rise;
    }

    PauseAnimation {
        duration: root.order * Theme.fade / 3
    }
    ParallelAnimation {
        NumberAnimation {
            target: root.block
            property: "opacity"
            to: 1
            duration: Theme.springDuration
            easing.type: Theme.springEasing
        }
        NumberAnimation {
            target: root.shift
            property: "y"
            to: 0
            duration: Theme.springDuration
            easing.type: Theme.springEasing
        }
    }
}
