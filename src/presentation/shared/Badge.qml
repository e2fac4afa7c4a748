// One small symbol that means something. Needs the symbol, its colour and the words for it.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    required property string symbol
    required property color color
    required property string label
    property string tip: label
    property real size: Theme.size9

    implicitWidth: mark.implicitWidth
    implicitHeight: mark.implicitHeight
    Accessible.role: Accessible.StaticText
    Accessible.name: label

    Symbol {
        id: mark
        anchors.centerIn: parent
        name: root.symbol
        size: root.size
        color: root.color
    }
    HoverHandler {
        id: hover
    }
    HoverTip {
        text: root.tip
        hovered: hover.hovered
    }
}
