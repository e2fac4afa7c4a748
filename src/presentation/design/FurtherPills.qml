// The port numbers of a process after its first: pills, and a last one for those that have no room.
import QtQuick
import Tarnvale.Design

Row {
    id: root

    required property list<string> numbers
    required property string more // "+3"
    required property string moreNumbers

    spacing: Theme.space6

    Repeater {
        model: root.numbers

        PortPill {
            required property string modelData

            text: modelData
            label: qsTr("Port %1").arg(text)
        }
    }
    Loader {
        active: root.more !== ""
        visible: active
        sourceComponent: PortPill {
            text: root.more
            label: qsTr("Ports %1").arg(root.moreNumbers)

            TipArea {
                anchors.fill: parent
                text: root.moreNumbers
            }
        }
    }
}
