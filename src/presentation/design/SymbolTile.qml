// A symbol on a rounded ground of its own colour. Needs the symbol. Hidden from screen readers: what stands beside it
// says the same.
import QtQuick
import Tarnvale.Design

RoundRect {
    id: root

    required property string symbol
    property color tint: Theme.gray
    property real size: 28
    property real symbolSize: Math.round(size * 0.43)
    property real fillOpacity: 0.14

    implicitWidth: size
    implicitHeight: size
    radius: size * 0.27
    color: Theme.wash(tint, Theme.dark ? fillOpacity + 0.06 : fillOpacity)
    Accessible.ignored: true

    Symbol {
        anchors.centerIn: parent
        name: root.symbol
        size: root.symbolSize
        color: root.tint
    }
}
