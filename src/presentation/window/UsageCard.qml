// How much of the processor and the memory the process takes, and took. Needs the inspector's facts.
import QtQuick
import Tarnvale.Design
import Tarnvale.Window

Card {
    id: root

    required property var facts

    component Figure: Column {
        property string label
        property string value

        width: parent.width / 2
        spacing: Theme.space1
        Accessible.role: Accessible.StaticText
        Accessible.name: label + ": " + value

        Text {
            text: parent.label
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size11
            Accessible.ignored: true
        }
        Text {
            text: parent.value !== "" ? parent.value : "—"
            color: Theme.ink
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size17
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
    }

    Row {
        width: parent.width

        Figure {
            label: qsTr("CPU")
            value: root.facts.cpu
        }
        Figure {
            label: qsTr("Memory")
            value: root.facts.memory
        }
    }
    Sparkline {
        width: parent.width
        height: WindowMetrics.sparkline
        visible: root.facts.cpuHistory.length > 0
        values: root.facts.cpuHistory
        tint: root.facts.isBusy ? Theme.red : Theme.link
    }
    Text {
        width: parent.width
        visible: root.facts.cpuHistory.length > 0
        text: root.facts.cpuCaption
        elide: Text.ElideRight
        color: Theme.inkTertiary
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size105
    }
}
