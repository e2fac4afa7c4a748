// How far something has come, as a bar. Needs the value from 0 to 1 and a title for screen readers.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    required property real value
    required property string title
    readonly property real minimumValue: 0
    readonly property real maximumValue: 1

    implicitHeight: Theme.space6
    Accessible.role: Accessible.ProgressBar
    Accessible.name: title

    RoundRect {
        anchors.fill: parent
        radius: height / 2
        color: Theme.fieldFill
        strokeColor: Theme.panelStroke
        strokeWidth: Theme.highContrast ? Theme.stroke : 0
    }
    RoundRect {
        width: Math.max(height, Math.round(root.width * Math.min(1, Math.max(0, root.value))))
        height: parent.height
        radius: height / 2
        color: Theme.accent
    }
}
