// A ring around a part that has the keyboard's focus. Needs the radius of the part that it surrounds; shows itself
// while `isShown`.
import QtQuick
import Tarnvale.Design

RoundRect {
    id: root

    property bool isShown: false
    property real inset: -Theme.space2

    anchors.fill: parent
    anchors.margins: inset
    color: "transparent"
    strokeColor: Theme.focusRing
    strokeWidth: Theme.space2
    radius: Theme.radius6
    visible: isShown
    z: 1
}
