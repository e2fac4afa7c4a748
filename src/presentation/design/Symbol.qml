// A symbol or a tool's logo in one colour, sharp at every scale of the screen. Needs its name; an unknown one stays
// empty. `size` is that of the text it goes with: a symbol's box is a little larger, a logo's is just as large.
import QtQuick

Item {
    id: root

    required property string name
    property color color: Theme.ink
    property real size: Theme.size13
    property bool turns: false // it is being rotated, so its pixels don't meet the screen's

    readonly property bool isLogo: name.startsWith("logo-")
    readonly property int box: Math.round(isLogo ? size : size * 1.2)
    readonly property real scaleOfScreen: Screen.devicePixelRatio > 0 ? Screen.devicePixelRatio : 1
    readonly property real stroke: size < 12 ? 2.25 : (size < 22 ? 2 : 1.5)

    implicitWidth: box
    implicitHeight: box
    Accessible.ignored: true

    Image {
        anchors.centerIn: parent
        width: Math.round(root.box * root.scaleOfScreen) / root.scaleOfScreen
        height: width
        sourceSize: Qt.size(root.box, root.box)
        smooth: root.turns
        source: root.name === "" ? "" : "image://symbol/" + root.name + "?stroke=" + root.stroke + "&color="
            + encodeURIComponent(root.color)
    }
}
