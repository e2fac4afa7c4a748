// How a server answers, as a dot: "responding", "serverError", "noResponse" or "unknown". Needs the health and the
// words for it. A dot above 8 has a ring of the ground's colour, since it then lies on a tile.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    required property string health
    property string summary: ""
    property real size: 9
    property bool pulses: false
    property color ringColor: Theme.surface

    readonly property bool isRinged: size > 8
    readonly property color color: {
        switch (health) {
        case "responding": return Theme.success;
        case "serverError": return Theme.red;
        case "noResponse": return Theme.warning;
        default: return Theme.gray;
        }
    }

    implicitWidth: size
    implicitHeight: size
    Accessible.role: Accessible.StaticText
    Accessible.name: summary

    Loader {
        active: root.pulses && root.health === "responding"
        anchors.fill: parent
        sourceComponent: PulseRing {
            color: root.color
        }
    }
    RoundRect {
        anchors.fill: parent
        anchors.margins: root.isRinged ? -1.5 : 0
        radius: width / 2
        color: root.isRinged ? root.ringColor : root.color
    }
    RoundRect {
        anchors.fill: parent
        radius: width / 2
        color: root.color
        visible: root.isRinged
    }
    HoverHandler {
        id: hover
    }
    HoverTip {
        text: root.summary
        hovered: hover.hovered
    }
}
