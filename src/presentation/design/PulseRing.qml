// A disc that spreads and fades for ever behind what is live. Needs its `color`. It isn't started where the desktop
// asks for no motion, nor while nobody can see it.
import QtQuick
import Tarnvale.Design

RoundRect {
    id: root

    readonly property bool runs: visible && !Theme.reduceMotion && Window.visibility !== Window.Hidden

    radius: width / 2
    color: Theme.success
    opacity: 0
    Accessible.ignored: true
    onRunsChanged: if (!runs) opacity = 0

    ParallelAnimation {
        running: root.runs
        loops: Animation.Infinite

        NumberAnimation {
            target: root
            property: "scale"
            from: 1
            to: 2.6
            duration: Theme.pulseDuration
            easing.type: Easing.OutQuad
        }
        NumberAnimation {
            target: root
            property: "opacity"
            from: 1
            to: 0
            duration: Theme.pulseDuration
            easing.type: Easing.OutQuad
        }
    }
}
