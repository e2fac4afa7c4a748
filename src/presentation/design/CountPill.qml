// A count in a pill. A new number rolls in over the old one, upwards when it grows.
import QtQuick
import Tarnvale.Design

RoundRect {
    id: root

    required property int count
    property string tip: ""
    property string label: tip === "" ? String(count) : tip

    property int before: count

    implicitWidth: Math.max(implicitHeight, Math.ceil(number.implicitWidth) + 2 * Theme.space7)
    implicitHeight: Theme.controlHeight - Theme.space4
    radius: height / 2
    color: Theme.selectedFill
    clip: true
    Accessible.role: Accessible.StaticText
    Accessible.name: label
    onCountChanged: {
        number.from = count > before ? height / 2 : -height / 2;
        before = count;
        if (Theme.springDuration > 0)
            roll.restart();
    }

    Text {
        id: number

        property real from: 0
        property real shift: 0

        anchors.horizontalCenter: parent.horizontalCenter
        y: Math.round((parent.height - height) / 2 + shift)
        text: root.count
        color: Theme.inkSecondary
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size11
        font.weight: Font.DemiBold
        Accessible.ignored: true
    }
    ParallelAnimation {
        id: roll

        NumberAnimation {
            target: number
            property: "shift"
            from: number.from
            to: 0
            duration: Theme.springDuration
            easing.type: Theme.springEasing
        }
        NumberAnimation {
            target: number
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.springDuration
        }
    }
    HoverHandler {
        id: hover
        enabled: root.tip !== ""
    }
    HoverTip {
        text: root.tip
        hovered: hover.hovered
    }
}
