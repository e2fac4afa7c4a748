// A small dot with a pulse behind it: something is live. Needs its colour and, where it means something by itself,
// the word for it in `label`.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    required property color color
    property real size: 7
    property string label: ""

    implicitWidth: size
    implicitHeight: size
    Accessible.role: Accessible.StaticText
    Accessible.name: label
    Accessible.ignored: label === ""

    PulseRing {
        anchors.fill: parent
        color: root.color
    }
    RoundRect {
        anchors.fill: parent
        radius: width / 2
        color: root.color
    }
}
